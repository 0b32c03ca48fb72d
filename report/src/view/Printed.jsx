import { useEffect, useState } from 'preact/hooks';
import { count } from '../data/numbers.js';
import { visibleRows } from '../data/rows.js';
import { textOf } from '../data/values.js';
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

/** The sets with their properties, as many as go into so many rows. */
function printedSets(model) {
  const sets = [];
  let rows = 0;
  for (const { place, level } of visibleRows(model, () => true)) {
    const properties = model.propertiesOf(place);
    rows += 1 + properties.length;
    if (rows > mostRows) break;
    sets.push({ place, level, properties });
  }
  return sets;
}

/** The tree with all properties, for paper only: what is on the screen are the rows in sight. */
export function Printed({ model }) {
  if (!usePrinting()) return null;
  const sets = printedSets(model);
  return (
    <section class="printed">
      {sets.map(({ place, level, properties }) => (
        <div key={place} style={{ paddingLeft: `${Math.min(level - 1, 8) * 12}px` }}>
          <h3>
            <Text value={model.classOf(place)} /> <span class="quiet">byte {count(model.sets[place].offset)}</span>
          </h3>
          {properties.map(({ name, value }, i) => (
            <p key={i}>
              <b>
                <Text value={name} />
              </b>{' '}
              <Text value={textOf(value)} />
            </p>
          ))}
        </div>
      ))}
      {sets.length < model.sets.length && <p>{count(model.sets.length - sets.length)} more sets are not printed.</p>}
    </section>
  );
}
