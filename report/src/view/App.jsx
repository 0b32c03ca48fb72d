import { useEffect, useMemo, useRef, useState } from 'preact/hooks';
import { linkTo } from '../data/model.js';
import { notices, signs, verdict } from '../data/notices.js';
import { counted } from '../data/numbers.js';
import { visibleRows, withAncestors } from '../data/rows.js';
import { search } from '../data/search.js';
import { Compared } from './Compared.jsx';
import { FileBar } from './FileBar.jsx';
import { Printed } from './Printed.jsx';
import { Properties } from './Properties.jsx';
import { Details, Notices, Summary } from './Summary.jsx';
import { Text } from './Text.jsx';
import { Timeline } from './Timeline.jsx';
import { Tree } from './Tree.jsx';
import { usePlace } from './useLocation.js';

/** Small trees are open at first, of large ones the root. */
const openAtFirst = 60;

function Header({ data, list, wanted, found, onSearch, onNext }) {
  const title = data.summary.title || data.clip.name;
  const { level, text } = verdict(list);
  return (
    <header class="head">
      <h1>
        <Text value={title} />
      </h1>
      <p class={`verdict ${level}`}>
        <span class="sign" aria-hidden="true">
          {signs[level] ?? '\u2713'}
        </span>{' '}
        {text}
      </p>
      <form
        role="search"
        onSubmit={(event) => {
          event.preventDefault();
          onNext();
        }}
      >
        <input
          type="search"
          aria-label="Search sets, properties and values"
          placeholder="Search sets, properties, values"
          value={wanted}
          onInput={(event) => onSearch(event.currentTarget.value)}
        />
        <output>{found === null ? '' : found === 0 ? 'none' : counted(found, 'set')}</output>
      </form>
    </header>
  );
}

/** Which sets are open, and how to change that. */
function useFolding(model) {
  const [open, setOpen] = useState(() => new Set(model.sets.length <= openAtFirst ? model.sets.keys() : model.roots.slice(0, 1)));
  const toggle = (place) =>
    setOpen((before) => {
      const after = new Set(before);
      if (!after.delete(place)) after.add(place);
      return after;
    });
  const openAbove = (place) =>
    setOpen((before) => {
      const path = model.pathTo(place);
      return path.every((up) => before.has(up)) ? before : new Set([...before, ...path]);
    });
  return { open, toggle, openAbove };
}

/** The sets that differ, where there are two clips. */
function useDifferences(model) {
  const differences = useMemo(() => model.comparison?.differences(model.sets.length), [model]);
  const isDifferent = differences?.marks.includes(1) ?? false;
  const [isOnly, setOnly] = useState(isDifferent);
  return { marks: isOnly ? differences.marks : null, isOnly, setOnly: isDifferent ? setOnly : undefined };
}

/** Marks that both have; null is for all sets. */
const common = (a, b) => (a === null || b === null ? (a ?? b) : a.map((mark, place) => mark & b[place]));

/** The rows of the tree, or of what a search and the differences leave of it. */
function useRows(model, wanted, differing, open) {
  const found = useMemo(() => {
    if (wanted.trim() === '') return null;
    const all = search(model, wanted);
    const marks = common(all.marks, differing);
    return { marks, found: differing === null ? all.found : marks.reduce((sum, mark) => sum + mark, 0) };
  }, [model, wanted, differing]);
  const kept = useMemo(() => {
    const marks = found?.marks ?? differing;
    return marks && withAncestors(model, marks);
  }, [model, found, differing]);
  const [folded, setFolded] = useState(new Set());
  useEffect(() => setFolded(new Set()), [found, differing]);
  const rows = useMemo(
    () =>
      kept
        ? visibleRows(model, (place) => !folded.has(place), (place) => kept[place] === 1)
        : visibleRows(model, (place) => open.has(place)),
    [model, kept, folded, open],
  );
  const toggleFound = (place) =>
    setFolded((before) => {
      const after = new Set(before);
      if (!after.delete(place)) after.add(place);
      return after;
    });
  return { rows, found, toggleFound: kept ? toggleFound : undefined };
}

export function App({ model }) {
  const { data } = model;
  const list = useMemo(() => notices(data), [data]);
  const [wanted, setWanted] = useState('');
  const [{ byte, isBefore }, replaceAddress] = usePlace();
  const { open, toggle, openAbove } = useFolding(model);
  const { marks: differing, isOnly, setOnly } = useDifferences(model);
  const { rows, found, toggleFound } = useRows(model, wanted, differing, open);
  const explorer = useRef(null);
  const chosen = byte === undefined ? undefined : isBefore ? model.comparison?.at(byte) : model.at(byte);
  // Of two clips the first set that differs is shown, else the root.
  const first = useMemo(() => rows.find(({ place }) => differing?.[place])?.place ?? model.roots[0], [model, differing]);
  const isNarrow = () => matchMedia('(max-width: 760px)').matches;

  useEffect(() => {
    if (chosen !== undefined) openAbove(chosen);
  }, [chosen]);

  const choose = (place, { isStep = false } = {}) => {
    const address = linkTo(model.sets[place]);
    if (isStep) replaceAddress(address);
    else location.hash = address;
  };

  // A link from above or from outside leads to the properties, which may be out of sight.
  useEffect(() => {
    if (chosen === undefined) return;
    if (isNarrow()) {
      scrollTo(0, 0);
    } else {
      const { top, bottom } = explorer.current.getBoundingClientRect();
      if (top > innerHeight - 200 || bottom < 200) explorer.current.scrollIntoView();
    }
  }, [byte, isBefore]);

  const next = () => {
    if (!found || found.found === 0) return;
    const current = rows.findIndex((row) => row.place === chosen);
    const isFound = (row) => found.marks[row.place] === 1;
    const row = rows.slice(current + 1).find(isFound) ?? rows.find(isFound);
    if (row) choose(row.place, { isStep: true });
    explorer.current.scrollIntoView();
  };

  return (
    <div class={`layout${chosen === undefined ? '' : ' chosen'}`}>
      <Header data={data} list={list} wanted={wanted} found={found?.found ?? null} onSearch={setWanted} onNext={next} />
      <main>
        <div class="above">
          <Summary data={data} />
          <Notices model={model} list={list} />
          {model.comparison && <Compared model={model} />}
          <Details data={data} />
          <FileBar data={data} />
          <Timeline model={model} data={data} />
        </div>
        <section class="explorer" ref={explorer} aria-label="Metadata">
          <Tree
            model={model}
            rows={rows}
            chosen={chosen}
            marks={found?.marks}
            onChoose={choose}
            onToggle={toggleFound ?? toggle}
            isOnly={isOnly}
            onOnly={setOnly}
          />
          <Properties model={model} place={chosen ?? first} byte={isBefore ? undefined : byte} onBack={() => history.back()} />
        </section>
        <Printed model={model} isOnly={isOnly} />
      </main>
      <footer class="quiet">
        {counted(model.sets.length, 'set')}. Written by corvid report.
      </footer>
    </div>
  );
}
