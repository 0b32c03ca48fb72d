import { useState } from 'preact/hooks';
import { linkTo } from '../data/model.js';
import { count } from '../data/numbers.js';
import { formOf, rationalText, readable } from '../data/values.js';
import { Text } from './Text.jsx';

const mostItems = 50;

function Reference({ model, value }) {
  const place = model.find(value.ref);
  if (place === undefined) {
    return (
      <span>
        <span class="mark odd">not in the file</span> {value.class} <span class="digits">{value.ref}</span>
      </span>
    );
  }
  const name = model.nameOf(place);
  return (
    <>
      <a href={linkTo(model.sets[place])}>
        <Text value={model.classOf(place)} />
        {name && (
          <>
            {' '}
            <span class="name">
              <Text value={name} />
            </span>
          </>
        )}
      </a>
      {value.ambiguous && <span class="mark odd">the first of several sets with this identifier</span>}
    </>
  );
}

function List({ model, value }) {
  const [isWhole, setWhole] = useState(false);
  if (value.length === 0) return <span class="quiet">empty</span>;
  const shown = isWhole ? value : value.slice(0, mostItems);
  return (
    <>
      <ol class="items">
        {shown.map((item, i) => (
          <li key={i}>
            <Value model={model} value={item} />
          </li>
        ))}
      </ol>
      {shown.length < value.length && (
        <button type="button" onClick={() => setWhole(true)}>
          Show all {count(value.length)}
        </button>
      )}
    </>
  );
}

/** A value as people read it. */
export function Value({ model, value }) {
  switch (formOf(value)) {
    case 'nothing':
      return <span class="quiet">none</span>;
    case 'list':
      return <List model={model} value={value} />;
    case 'reference':
      return <Reference model={model} value={value} />;
    case 'label':
      return (
        <>
          {value.name && <Text value={value.name} />} <span class="digits">{value.label}</span>
        </>
      );
    case 'rational':
      return rationalText(value);
    case 'codeUnits':
      return <span class="digits">{value.utf16}</span>;
    case 'bytes':
      return (
        <>
          <span class="digits">{value.hex.toLowerCase()}</span>
          {value.bytes && <span class="quiet"> the first of {count(value.bytes)} bytes</span>}
        </>
      );
    case 'member':
      return value.name === null ? (
        String(value.value)
      ) : (
        <>
          <Text value={value.name} /> <span class="quiet">({value.value})</span>
        </>
      );
    case 'fields':
      return (
        <dl class="fields">
          {Object.entries(value).map(([name, part]) => (
            <div key={name}>
              <dt>{name}</dt>
              <dd>
                <Value model={model} value={part} />
              </dd>
            </div>
          ))}
        </dl>
      );
    case 'string':
      return value === '' ? <span class="quiet">empty text</span> : <Text value={readable(value)} />;
    default:
      return String(value);
  }
}
