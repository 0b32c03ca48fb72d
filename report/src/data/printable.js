// Characters that would drive or break a line, turn the direction of text, or can't be seen.
const unsafe =
  /[\u0000-\u001f\u007f-\u009f\u00ad\u061c\u180e\u200b-\u200f\u2028-\u202f\u2060-\u206f\ufeff\ufff9-\ufffb]|[\u{e0000}-\u{e0fff}]|\p{Surrogate}/gu;

const code = (character) =>
  `U+${character.codePointAt(0).toString(16).toUpperCase().padStart(4, '0')}`;

/** A text in pieces: what can be shown as it is, and the codes of characters that can't. */
export function pieces(text) {
  const result = [];
  let end = 0;
  for (const found of text.matchAll(unsafe)) {
    if (found.index > end) result.push({ text: text.slice(end, found.index) });
    result.push({ code: code(found[0]) });
    end = found.index + found[0].length;
  }
  if (end < text.length) result.push({ text: text.slice(end) });
  return result;
}

/** The same as one text, for where there is no markup. */
export const printable = (text) => String(text).replace(unsafe, (character) => `[${code(character)}]`);
