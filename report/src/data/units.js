/** What a number of a type counts. */
export const units = {
  Position: 'edit units',
  Length: 'edit units',
};
