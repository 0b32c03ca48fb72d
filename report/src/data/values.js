import { decimal } from './numbers.js';

/** What a value is, by its form. */
export function formOf(value) {
  if (value === null || value === undefined) return 'nothing';
  if (Array.isArray(value)) return 'list';
  if (typeof value !== 'object') return typeof value;
  if ('ref' in value) return 'reference';
  if ('label' in value) return 'label';
  if ('numerator' in value) return 'rational';
  if ('utf16' in value) return 'codeUnits';
  if ('hex' in value) return 'bytes';
  if ('value' in value && 'name' in value) return 'member';
  return 'fields';
}

const dateTime = /^(\d{4}-\d\d-\d\d)T(\d\d:\d\d:\d\d)(?:\.000|(\.\d{3}))$/;

/** A text as people read it: a timestamp loses its T, and its milliseconds where there are none. */
export function readable(text) {
  const found = dateTime.exec(text);
  return found ? `${found[1]} ${found[2]}${found[3] ?? ''}` : text;
}

export function rationalText(value) {
  const exact = `${value.numerator}/${value.denominator}`;
  if (value.denominator === 1) return String(value.numerator);
  return value.denominator === 0 ? exact : `${exact} (${decimal(value)})`;
}

/** A value on one line, without limits. */
export function textOf(value) {
  switch (formOf(value)) {
    case 'nothing':
      return '';
    case 'list':
      return value.map(textOf).join(', ');
    case 'reference':
      return `${value.class ?? ''} ${value.ref}`.trim();
    case 'label':
      return value.name ? `${value.name} (${value.label})` : value.label;
    case 'rational':
      return rationalText(value);
    case 'codeUnits':
      return value.utf16;
    case 'bytes':
      return value.hex;
    case 'member':
      return value.name === null ? String(value.value) : `${value.name} (${value.value})`;
    case 'fields':
      return Object.entries(value)
        .map(([name, part]) => `${name} ${textOf(part)}`)
        .join(', ');
    default:
      return String(value);
  }
}
