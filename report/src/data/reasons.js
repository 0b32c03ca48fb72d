/** Why a property is not among those of its set. */
const reasons = {
  unknown: 'unknown',
  repeated: 'repeated',
  misplaced: 'of other sets',
  unfit: 'does not fit its type',
};

export const reasonOf = (why) => reasons[why] ?? why;

/** How many properties of a set are not among its own, for each reason: "2 unknown", "1 repeated". */
export function oddities({ other = [] }) {
  const numbers = new Map();
  for (const { why } of other) numbers.set(why, (numbers.get(why) ?? 0) + 1);
  return [...numbers].map(([why, number]) => `${number} ${number > 1 && why === 'unfit' ? 'do not fit their types' : reasonOf(why)}`);
}
