import { useState } from 'preact/hooks';
import { linkTo } from '../data/model.js';
import { bytes, count } from '../data/numbers.js';
import { reasonOf } from '../data/reasons.js';
import { units } from '../data/units.js';
import { Change } from './Change.jsx';
import { Text } from './Text.jsx';
import { Value } from './Value.jsx';

const shortRaw = 32;
const spaced = (hex) => hex.toLowerCase().replace(/(..)(?=.)/g, '$1 ');

/** The bytes of a value; long ones are cut until all are asked for. */
function Raw({ hex, length }) {
  const [isWhole, setWhole] = useState(false);
  if (length === 0) return <span class="raw">no bytes</span>;
  const shown = isWhole ? hex : hex.slice(0, 2 * shortRaw);
  const held = hex.length / 2;
  return (
    <span class="raw">
      <code>{spaced(shown)}</code>
      {shown.length < hex.length && (
        <button type="button" onClick={() => setWhole(true)}>
          {held < length ? `first ${count(held)} bytes` : `all ${count(length)} bytes`}
        </button>
      )}
      {shown.length === hex.length && held < length && (
        <span class="quiet"> and {bytes(length - held)} that the page does not hold</span>
      )}
    </span>
  );
}

/** What the registers say of a property: its name in sight, the rest where it is asked for. */
function Registered({ definition, label }) {
  const rows = [
    ['Label', definition?.label ?? label],
    ['Type', definition?.type],
    ['Document', definition?.document],
  ].filter(([, text]) => text);
  if (rows.length === 0) return null;
  return (
    <details class="registered">
      <summary>{definition?.name ? <Text value={definition.name} /> : 'Label'}</summary>
      <dl class="fields">
        {rows.map(([what, text]) => (
          <div key={what}>
            <dt>{what}</dt>
            <dd class={what === 'Label' ? 'digits' : undefined}>
              <Text value={text} />
            </dd>
          </div>
        ))}
      </dl>
    </details>
  );
}

/** @param isTagOnly  place and bytes are said with the values. */
function Facts({ definition, label, raw, isTagOnly }) {
  const unit = definition && units[definition.valueType];
  return (
    <div class="about">
      <Registered definition={definition} label={label} />
      {definition && <span>{definition.valueType}</span>}
      {unit && <span>{unit}</span>}
      {raw && <span>tag {raw.tag}</span>}
      {raw && !isTagOnly && (
        <>
          <span>byte {count(raw.offset)}</span>
          <span>{bytes(raw.length)}</span>
          <Raw hex={raw.hex} length={raw.length} />
        </>
      )}
    </div>
  );
}

/** The bytes of tag and length, as nearly all files have them. */
const head = 4;

function Place({ raw }) {
  return (
    raw && (
      <p class="about">
        <span>byte {count(raw.offset)}</span> <span>{bytes(raw.length)}</span> <Raw hex={raw.hex} length={raw.length} />
      </p>
    )
  );
}

/** A value before and after, side by side. */
function Both({ model, value, raw, earlier }) {
  return (
    <div class="both">
      <div>
        <h3>Before</h3>
        <Value model={model.comparison.earlier} value={earlier.value} />
        <Place raw={earlier.raw} />
      </div>
      <div>
        <h3>After</h3>
        <Value model={model} value={value} />
        <Place raw={raw} />
      </div>
    </div>
  );
}

function Property({ model, byte, name, value, definition, raw, why, label, change, earlier }) {
  const isHere = raw !== undefined && byte >= raw.offset && byte < raw.offset + head + raw.length;
  return (
    <li class={`property${why ? ' odd' : ''}${change ? ` ${change}` : ''}${isHere ? ' here' : ''}`}>
      <div class="line">
        <span class="symbol">
          {change && <Change kind={change} />}
          <Text value={name} />
          {why && <span class="mark odd">{reasonOf(why)}</span>}
        </span>
        <div class="value">
          {earlier ? (
            <Both model={model} value={value} raw={raw} earlier={earlier} />
          ) : (
            <Value model={change === 'removed' ? model.comparison.earlier : model} value={value} />
          )}
        </div>
      </div>
      <Facts definition={definition} label={label} raw={raw} isTagOnly={earlier !== undefined} />
    </li>
  );
}

/** Of a deep tree the sets next to the chosen one are named. */
const mostAbove = 8;

function Path({ model, place }) {
  const path = model.pathTo(place).slice(-mostAbove);
  if (path.length === 0) return null;
  return (
    <nav class="path" aria-label="Sets above">
      {path.map((up) => (
        <a key={up} href={linkTo(model.sets[up])}>
          <Text value={model.classOf(up)} />
        </a>
      ))}
    </nav>
  );
}

function Links({ model, title, places }) {
  const [isWhole, setWhole] = useState(false);
  const most = 20;
  if (places.length === 0) return null;
  return (
    <p class="links">
      {title}{' '}
      {(isWhole ? places : places.slice(0, most)).map((each) => (
        <a key={each} href={linkTo(model.sets[each])}>
          <Text value={model.classOf(each)} />
          {model.nameOf(each) && (
            <span class="name">
              <Text value={` ${model.nameOf(each)}`} />
            </span>
          )}
        </a>
      ))}
      {!isWhole && places.length > most && (
        <button type="button" onClick={() => setWhole(true)}>
          all {count(places.length)}
        </button>
      )}
    </p>
  );
}

/** The properties of one set, with where and how each is in the file. */
export function Properties({ model, place, byte, onBack }) {
  if (place === undefined) {
    return (
      <div class="properties empty">
        <p class="quiet">Choose a set to see its properties.</p>
      </div>
    );
  }
  const set = model.sets[place];
  const rows = model.rowsOf(place);
  const change = model.comparison?.changeOf(place);
  const said = change === 'removed' ? model.comparison.earlier : model;
  return (
    <div class="properties">
      <button type="button" class="back" onClick={onBack}>
        {'\u2190'} Back
      </button>
      <Path model={model} place={place} />
      <h2 id="properties-heading" tabIndex={-1}>
        <Text value={model.classOf(place)} />
        {model.nameOf(place) && (
          <span class="name">
            {' '}
            <Text value={model.nameOf(place)} />
          </span>
        )}
        {model.isDark(place) && <span class="mark">dark</span>}
        {change && (
          <span class="mark">
            <Change kind={change} /> {change}
          </span>
        )}
      </h2>
      <p class="about">
        <span>
          byte {count(set.offset)}
          {change === 'removed' && <> of <Text value={model.comparison.before.data.clip.name} /></>}
        </span>
        <span>{bytes(set.length)}</span>
        {set.id && <span class="digits">{set.id}</span>}
        <a href={linkTo(set)}>Link to this set</a>
      </p>
      {model.isDark(place) && <p class="quiet">The dictionary does not know this set. Its bytes are kept as they are.</p>}
      <ul class="list">
        {rows.map((row, i) => (
          <Property key={`${place}-${i}`} model={said} byte={byte} {...row} />
        ))}
      </ul>
      {set.hex && (
        <p class="about">
          <Raw hex={set.hex} length={set.bytes ?? set.hex.length / 2} />
        </p>
      )}
      <Links model={model} title="Referred to by" places={model.referrersOf(place)} />
    </div>
  );
}
