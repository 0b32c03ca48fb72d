import { changes } from '../data/comparison.js';

/** The sign of what differs. */
export function Change({ kind }) {
  const { sign, words } = changes[kind];
  return (
    <span class={`change ${kind}`} role="img" aria-label={words} title={words}>
      {sign}
    </span>
  );
}
