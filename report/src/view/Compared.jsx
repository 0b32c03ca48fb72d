import { useMemo } from 'preact/hooks';
import { counted } from '../data/numbers.js';
import { Change } from './Change.jsx';
import { Text } from './Text.jsx';

/** The blocks of both clips side by side: those of one name in their order. */
function both(before, after) {
  const rows = [];
  const byName = new Map();
  const take = (blocks, side) => {
    const numbers = new Map();
    for (const { name, lines } of blocks) {
      const number = numbers.get(name) ?? 0;
      numbers.set(name, number + 1);
      const key = `${name} ${number}`;
      if (!byName.has(key)) {
        byName.set(key, { name, before: [], after: [] });
        rows.push(byName.get(key));
      }
      byName.get(key)[side] = lines;
    }
  };
  take(after, 'after');
  take(before, 'before');
  return rows.filter((row) => row.before.join('\n') !== row.after.join('\n'));
}

const Lines = ({ lines }) => lines.map((line, i) => <div key={i}><Text value={line} /></div>);

/** How two clips differ, at a glance. */
export function Compared({ model }) {
  const { comparison, data } = model;
  const { counts } = useMemo(() => comparison.differences(model.sets.length), [model]);
  const rows = useMemo(() => both(data.comparison.before.glance.blocks, data.glance.blocks), [data]);
  const kinds = Object.keys(counts).filter((kind) => counts[kind] > 0);
  const { otherInstanceUIDs } = comparison;
  return (
    <section class="compared" aria-labelledby="compared-heading">
      <h2 id="compared-heading">
        Compared with <Text value={data.comparison.before.clip.name} />
      </h2>
      <p class="counts">
        {kinds.length === 0 && <span>The sets of both say the same.</span>}
        {kinds.map((kind) => (
          <span key={kind}>
            <Change kind={kind} /> {counted(counts[kind], 'set')} {kind}
          </span>
        ))}
        {otherInstanceUIDs > 0 && (
          <span class="quiet">
            {counted(otherInstanceUIDs, 'set')} {otherInstanceUIDs === 1 ? 'has another InstanceUID' : 'have other InstanceUIDs'}
          </span>
        )}
      </p>
      {rows.length > 0 && (
        <div class="scrolling" role="region" aria-label="What differs at a glance" tabIndex={0}>
          <table>
            <thead>
              <tr>
                <th scope="col">What</th>
                <th scope="col">Before: <Text value={data.comparison.before.clip.name} /></th>
                <th scope="col">After: <Text value={data.clip.name} /></th>
              </tr>
            </thead>
            <tbody>
              {rows.map(({ name, before, after }, i) => (
                <tr key={i}>
                  <th scope="row">{name}</th>
                  <td><Lines lines={before} /></td>
                  <td><Lines lines={after} /></td>
                </tr>
              ))}
            </tbody>
          </table>
        </div>
      )}
    </section>
  );
}
