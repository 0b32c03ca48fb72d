import { formOf, rationalText, readable } from './values.js';

/** Whether hexadecimal digits have others in them that begin where a byte or code unit does. */
function holdsDigits(hex, digits, width) {
  for (let at = hex.indexOf(digits); at !== -1; at = hex.indexOf(digits, at + 1)) {
    if (at % width === 0) return true;
  }
  return false;
}

/**
 * Whether a value has a text in it. The text is in lower case.
 * @param digits  the text as hexadecimal digits; null where it is none.
 */
function holds(value, wanted, digits) {
  switch (formOf(value)) {
    case 'nothing':
      return false;
    case 'string':
      return value.toLowerCase().includes(wanted) || readable(value).includes(wanted);
    case 'rational':
      return rationalText(value).includes(wanted);
    case 'list':
      return value.some((item) => holds(item, wanted, digits));
    case 'reference':
      return value.ref.includes(wanted);
    case 'number':
    case 'boolean':
      return String(value).includes(wanted);
    case 'bytes':
      return digits !== null && holdsDigits(value.hex, digits, 2);
    case 'codeUnits':
      return digits !== null && holdsDigits(value.utf16, digits, 4);
    default:
      return Object.values(value).some((part) => holds(part, wanted, digits));
  }
}

/** Tells which sets have a text in their class, identifier, or the names and values of properties. */
export function finder(text) {
  const wanted = text.trim().toLowerCase();
  // Bytes are hexadecimal in capitals; the page shows them in small letters with blanks.
  const digits = /^[0-9a-f ]+$/.test(wanted) ? wanted.replaceAll(' ', '').toUpperCase() : null;
  const holdsBytes = ({ hex }) => hex !== undefined && digits !== null && holdsDigits(hex, digits, 2);
  const holdsOther = ({ hex, ...said }) => holdsBytes({ hex }) || Object.values(said).some((each) => holds(each, wanted, digits));
  const names = new Map();
  const isNamed = (name) => {
    let is = names.get(name);
    if (is === undefined) {
      is = name.toLowerCase().includes(wanted);
      names.set(name, is);
    }
    return is;
  };
  return (set) => {
    if (isNamed(set.class ?? '') || isNamed(set.name ?? '') || set.id?.includes(wanted) || set.key?.includes(wanted)) return true;
    for (const name in set.properties) {
      if (isNamed(name) || holds(set.properties[name], wanted, digits)) return true;
    }
    return holdsBytes(set) || (set.other?.some(holdsOther) ?? false);
  };
}

/** The places of the sets that are found, as marks and in the order of the data. */
export function search(model, text) {
  const isFound = finder(text);
  const marks = new Uint8Array(model.sets.length);
  const { comparison } = model;
  const hadIt = (place) => {
    const old = comparison?.changeOf(place) === 'changed' ? comparison.oldPlace(place) : undefined;
    return old !== undefined && isFound(comparison.before.sets[old]);
  };
  let found = 0;
  model.sets.forEach((set, place) => {
    if (isFound(set) || hadIt(place)) {
      marks[place] = 1;
      found += 1;
    }
  });
  return { marks, found };
}
