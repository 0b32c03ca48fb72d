import { useEffect, useRef } from 'preact/hooks';
import { counted } from '../data/numbers.js';
import { oddities } from '../data/reasons.js';
import { Change } from './Change.jsx';
import { Text } from './Text.jsx';
import { useVirtualRows } from './useVirtualRows.js';

const rowHeight = 26;
const rowId = (place) => `row-${place}`;

function Row({ model, row, top, isChosen, isFound, onChoose, onToggle }) {
  const name = model.nameOf(row.place);
  const { owners } = model;
  const change = model.comparison?.changeOf(row.place);
  return (
    <div
      id={rowId(row.place)}
      role="treeitem"
      aria-level={row.level}
      aria-setsize={row.size}
      aria-posinset={row.position}
      aria-expanded={row.hasChildren ? row.isOpen : undefined}
      aria-selected={isChosen}
      class={`row${isFound ? ' found' : ''}${change ? ` ${change}` : ''}`}
      style={{ top: `${top}px`, paddingLeft: `${4 + 16 * Math.min(row.level - 1, 12)}px` }}
      title={owners[row.place]}
      onClick={() => onChoose(row.place)}
    >
      <span
        class="fold"
        aria-hidden="true"
        onClick={(event) => {
          if (!row.hasChildren) return;
          event.stopPropagation();
          onToggle(row.place);
        }}
      >
        {row.hasChildren && (row.isOpen ? '\u25be' : '\u25b8')}
      </span>
      {change && <Change kind={change} />}
      <span class="class">
        <Text value={model.classOf(row.place)} />
      </span>
      {model.isDark(row.place) && <span class="mark">dark</span>}
      {oddities(model.sets[row.place]).map((text) => (
        <span key={text} class="mark odd">
          {text}
        </span>
      ))}
      {name && (
        <span class="name">
          <Text value={name} />
        </span>
      )}
    </div>
  );
}

/** All sets as a tree; only the rows that are to be seen are in the page. */
export function Tree({ model, rows, chosen, marks, onChoose, onToggle, isOnly, onOnly }) {
  const scroll = useRef(null);
  const virtual = useVirtualRows(rows.length, rowHeight, scroll);
  const current = rows.findIndex((row) => row.place === chosen);

  useEffect(() => {
    if (current >= 0) virtual.scrollToIndex(current, { align: 'auto' });
  }, [chosen, current >= 0]);

  const go = (index) => {
    const row = rows[Math.max(0, Math.min(rows.length - 1, index))];
    if (row) onChoose(row.place, { isStep: true });
  };

  const onKeyDown = (event) => {
    if (event.ctrlKey || event.metaKey || event.altKey || rows.length === 0) return;
    const row = rows[current];
    const page = Math.max(1, Math.floor(scroll.current.clientHeight / rowHeight) - 1);
    const keys = {
      ArrowDown: () => go(current + 1),
      ArrowUp: () => go(current < 0 ? 0 : current - 1),
      PageDown: () => go(current + page),
      PageUp: () => go(current - page),
      Home: () => go(0),
      End: () => go(rows.length - 1),
      ArrowRight: () => {
        if (row?.hasChildren) row.isOpen ? go(current + 1) : onToggle(row.place);
      },
      ArrowLeft: () => {
        if (row?.isOpen) onToggle(row.place);
        else if (row && model.parentOf(row.place) !== undefined) onChoose(model.parentOf(row.place), { isStep: true });
      },
      Enter: () => row && onChoose(row.place),
      ' ': () => row && onChoose(row.place),
    };
    const act = keys[event.key];
    if (!act) return;
    event.preventDefault();
    act();
  };

  const items = virtual.getVirtualItems();
  const isBuilt = items.some(({ index }) => index === current);
  return (
    <div class="side">
      {onOnly && (
        <label class="only">
          <input type="checkbox" checked={isOnly} onChange={(event) => onOnly(event.currentTarget.checked)} /> Only differences
        </label>
      )}
      <div
        class="tree"
        role="tree"
        tabIndex={0}
        ref={scroll}
        aria-label={`Metadata, ${counted(model.sets.length, 'set')}`}
        aria-activedescendant={isBuilt ? rowId(chosen) : undefined}
        onKeyDown={onKeyDown}
      >
        <div class="rows" role="presentation" style={{ height: `${virtual.getTotalSize()}px` }}>
          {items.map(({ index, start }) => (
            <Row
              key={rows[index].place}
              model={model}
              row={rows[index]}
              top={start}
              isChosen={index === current}
              isFound={marks?.[rows[index].place] === 1}
              onChoose={onChoose}
              onToggle={onToggle}
            />
          ))}
        </div>
      </div>
    </div>
  );
}
