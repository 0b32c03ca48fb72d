import { useState } from 'preact/hooks';
import { linkTo } from '../data/model.js';
import { bytes, count } from '../data/numbers.js';
import { signs } from '../data/notices.js';
import { Text } from './Text.jsx';

const headings = ['Picture', 'Sound', 'Start', 'Duration'];
const rank = ({ name }) => headings.indexOf(name);

/** A number stays on the line of its unit, and a width on that of its height. */
const keepTogether = (line) => line.replace(/(\d) (x |fps|bit|kHz|channel)/g, (_, digit, unit) => `${digit}\u00a0${unit.replace(' ', '\u00a0')}`);

/** A block of a stream says first which tracks it is about, then what is in them. */
function Fact({ block: { name, lines } }) {
  const hasTracks = lines.length > 1;
  // What a terminal needs to indent lines is no part of them.
  const [first, ...more] = (hasTracks ? lines.slice(1) : lines).map((line) => line.trimStart());
  return (
    <div>
      <dt>
        {name}
        {hasTracks && (
          <>
            {' \u00b7 '}
            <Text value={lines[0]} />
          </>
        )}
      </dt>
      <dd class={rank({ name }) < 0 ? '' : 'first'}>
        <Text value={keepTogether(first)} />
      </dd>
      {more.map((line, i) => (
        <dd key={i}>
          <Text value={line} />
        </dd>
      ))}
    </div>
  );
}

function Facts({ blocks }) {
  if (blocks.length === 0) return null;
  return (
    <dl class="facts">
      {blocks.map((block, i) => (
        <Fact key={i} block={block} />
      ))}
    </dl>
  );
}

/** What the clip is, in the words of `corvid info`. */
export function Summary({ data }) {
  const { blocks, headline } = data.glance;
  return (
    <section class="summary" aria-label="Summary">
      <p class="quiet">
        <Text value={data.clip.name} />, {bytes(data.clip.size)} {'\u00b7'} <Text value={headline} />
      </p>
      <Facts blocks={blocks.filter((block) => rank(block) >= 0).sort((a, b) => rank(a) - rank(b))} />
    </section>
  );
}

/** What else people say of the clip. */
export function Details({ data }) {
  const blocks = data.glance.blocks.filter((block) => rank(block) < 0 && block.name !== 'Title');
  if (blocks.length === 0) return null;
  return (
    <section aria-label="Details">
      <Facts blocks={blocks} />
    </section>
  );
}

/** Where a notice is about, as a link to the set that has the byte. */
function Place({ model, notice }) {
  const named = [notice.set, notice.property].filter(Boolean).join(' ');
  const hasByte = typeof notice.byte === 'number';
  const place = hasByte ? model.at(notice.byte) : undefined;
  const text = `${named ? `${named}, ` : ''}byte ${count(notice.byte ?? 0)}`;
  if (place !== undefined) {
    return <a href={`#byte-${notice.byte}`}>{named ? text : `${model.classOf(place)}, ${text}`}</a>;
  }
  // A warning about a class of sets leads to the first of them.
  const other = notice.set ? model.sets.findIndex((set) => set.class === notice.set) : -1;
  if (other >= 0) return <a href={linkTo(model.sets[other])}>{named}</a>;
  const isSaid = hasByte && notice.text.includes(`byte ${notice.byte}`);
  return <span class="quiet">{hasByte && !isSaid ? text : named}</span>;
}

const words = { error: 'Error', warning: 'Warning', note: 'Note' };

const mostNotices = 5;

export function Notices({ model, list }) {
  const { comparison, data } = model;
  const [isWhole, setWhole] = useState(false);
  if (list.length === 0) return null;
  return (
    <section class="notices" aria-label="Warnings">
      {comparison && (
        <p class="quiet">
          About <Text value={data.clip.name} />
        </p>
      )}
      <ul>
        {(isWhole ? list : list.slice(0, mostNotices)).map((notice, i) => (
          <li key={i} class={notice.level}>
            <span class="sign" role="img" aria-label={words[notice.level]}>
              {signs[notice.level]}
            </span>
            <span class="what">
              <Text value={notice.text} />
              {notice.count > 1 && <> (and {count(notice.count - 1)} more)</>}{' '}
              <span class="where">
                <Place model={model} notice={notice} />
                {notice.code && <code>{notice.code}</code>}
              </span>
            </span>
          </li>
        ))}
      </ul>
      {!isWhole && list.length > mostNotices && (
        <button type="button" onClick={() => setWhole(true)}>
          Show all {count(list.length)}
        </button>
      )}
    </section>
  );
}
