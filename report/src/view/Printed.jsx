import { useEffect, useState } from 'preact/hooks';
import { count } from '../data/numbers.js';
import { visibleRows } from '../data/rows.js';
import { textOf } from '../data/values.js';
import { Change } from './Change.jsx';
import { Text } from './Text.jsx';

/** More than these nobody wants on paper. */
const mostRows = 5000;

function usePrinting() {
  const [isPrinting, setPrinting] = useState(() => matchMedia('print').matches);
  useEffect(() => {
    const media = matchMedia('print');
    const follow = () => setPrinting(media.matches);
    const begin = () => setPrinting(true);
    const end = () => setPrinting(false);
    media.addEventListener('change', follow);
    addEventListener('beforeprint', begin);
    addEventListener('afterprint', end);
    return () => {
      media.removeEventListener('change', follow);
      removeEventListener('beforeprint', begin);
      removeEventListener('afterprint', end);
    };
  }, []);
  return isPrinting;
}

/** The sets with their properties, as many as go into so many rows, and how many are left. */
function printedSets(model, isOnly) {
  const sets = [];
  let rows = 0;
  let left = 0;
  for (const { place, level } of visibleRows(model, () => true)) {
    const change = model.comparison?.changeOf(place);
    if (isOnly && change === undefined) continue;
    const properties = model.comparison?.rowsOf(model, place) ?? model.propertiesOf(place);
    rows += 1 + properties.length;
    if (rows > mostRows) left += 1;
    else sets.push({ place, level, change, properties });
  }
  return { sets, left };
}

function Property({ row: { name, value, change, earlier } }) {
  return (
    <p>
      {change && <Change kind={change} />}{' '}
      <b>
        <Text value={name} />
      </b>{' '}
      {earlier && (
        <>
          <Text value={textOf(earlier.value)} /> {'\u2192'}{' '}
        </>
      )}
      <Text value={textOf(value)} />
    </p>
  );
}

/**
 * The tree with all properties, for paper only: what is on the screen are the rows in sight.
 * @param isOnly  only the sets that differ.
 */
export function Printed({ model, isOnly }) {
  if (!usePrinting()) return null;
  const { sets, left } = printedSets(model, isOnly);
  return (
    <section class="printed">
      {sets.map(({ place, level, change, properties }) => (
        <div key={place} style={{ paddingLeft: `${Math.min(level - 1, 8) * 12}px` }}>
          <h3>
            {change && <Change kind={change} />} <Text value={model.classOf(place)} />{' '}
            <span class="quiet">byte {count(model.sets[place].offset)}</span>
          </h3>
          {properties.map((row, i) => (
            <Property key={i} row={row} />
          ))}
        </div>
      ))}
      {left > 0 && <p>{count(left)} more sets are not printed.</p>}
    </section>
  );
}
