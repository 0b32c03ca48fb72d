import { useState } from 'preact/hooks';
import { bytes, count, share } from '../data/numbers.js';
import { ends, kinds, linear, totals } from '../data/regions.js';
import { Text } from './Text.jsx';

const mostPieces = 24;
const mostRows = 200;

const describe = ({ kind, begin, end }) =>
  `${kinds[kind].name}, byte ${count(begin)} to ${count(end)}, ${bytes(end - begin)}`;

function Strip({ regions, size }) {
  return (
    <div class="strip" role="img" aria-label="The file from its first byte to its last, true to scale">
      {linear(regions, size).map(({ region, from, width, isTick }) => (
        <span
          key={region.begin}
          class={`${isTick ? 'tick' : 'piece'} ${region.kind}`}
          title={describe(region)}
          style={{ left: `${100 * from}%`, width: isTick ? undefined : `${100 * width}%` }}
        />
      ))}
    </div>
  );
}

function Piece({ region, size }) {
  const isWide = region.kind === 'essence';
  return (
    <li class={`piece ${region.kind}`} title={describe(region)}>
      <b>{kinds[region.kind].letter}</b>
      {isWide && <span class="share">{share(region.end - region.begin, size)}</span>}
      {isWide && (
        <svg class="zigzag" viewBox="0 0 8 24" aria-hidden="true">
          <path d="M6 0 2 4 6 8 2 12 6 16 2 20 6 24" />
        </svg>
      )}
    </li>
  );
}

/** The regions side by side, those without essence large enough to see. */
function Broken({ regions, size }) {
  const { first, left, last } = ends(regions, mostPieces);
  const piece = (region) => <Piece key={region.begin} region={region} size={size} />;
  return (
    <ol class="broken" aria-label="The parts of the file in their order, not to scale">
      {first.map(piece)}
      {left > 0 && <li class="left">{count(left)} more</li>}
      {last.map(piece)}
    </ol>
  );
}

function Table({ regions, size, partitions }) {
  const [isWhole, setWhole] = useState(false);
  const shown = isWhole ? regions : regions.slice(0, mostRows);
  return (
    <div class="scrolling" role="region" aria-label="Parts of the file" tabIndex={0}>
      <table>
        <thead>
          <tr>
            <th scope="col">Part</th>
            <th scope="col" class="number">From byte</th>
            <th scope="col" class="number">Size</th>
            <th scope="col" class="number">Share</th>
            <th scope="col">Partition</th>
          </tr>
        </thead>
        <tbody>
          {shown.map((region) => {
            const partition = partitions[region.partition];
            return (
              <tr key={region.begin}>
                <td>
                  <i class={`swatch ${region.kind}`} aria-hidden="true">{kinds[region.kind].letter}</i> {kinds[region.kind].name}
                </td>
                <td class="number">{count(region.begin)}</td>
                <td class="number">{bytes(region.end - region.begin)}</td>
                <td class="number">{share(region.end - region.begin, size)}</td>
                <td>{partition && `${region.partition}: ${partition.kind}, ${partition.status}`}</td>
              </tr>
            );
          })}
        </tbody>
      </table>
      {shown.length < regions.length && (
        <button type="button" onClick={() => setWhole(true)}>
          Show all {count(regions.length)} parts
        </button>
      )}
    </div>
  );
}

export function FileBar({ data }) {
  const { regions, clip, summary } = data;
  if (regions.length === 0) return null;
  return (
    <section class="file" aria-labelledby="file-heading">
      <h2 id="file-heading">
        File{data.comparison && <span class="quiet"> <Text value={clip.name} /></span>}
      </h2>
      <Strip regions={regions} size={clip.size} />
      <div class="scale">
        <span>0</span>
        <span>true to scale</span>
        <span>{bytes(clip.size)}</span>
      </div>
      <Broken regions={regions} size={clip.size} />
      <div class="scale">
        <span class="legend">
          {totals(regions).map(({ kind, bytes: sum, regions: number }) => (
            <span key={kind}>
              <i class={`swatch ${kind}`} aria-hidden="true">{kinds[kind].letter}</i> {kinds[kind].name}{' '}
              <span class="quiet">
                {bytes(sum)}
                {number > 1 && ` in ${count(number)}`}
              </span>
            </span>
          ))}
        </span>
        <span>not to scale</span>
      </div>
      <details>
        <summary>
          {count(summary.partitions.length)} partition{summary.partitions.length === 1 ? '' : 's'}, {count(regions.length)} part
          {regions.length === 1 ? '' : 's'} in a table
        </summary>
        <Table regions={regions} size={clip.size} partitions={summary.partitions} />
      </details>
    </section>
  );
}
