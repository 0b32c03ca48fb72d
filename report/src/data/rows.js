/**
 * The rows of the tree that are to be seen, from top to bottom.
 * @param isOpen  whether the sets below a set are shown.
 * @param isIn  whether a set is shown at all.
 */
export function visibleRows(model, isOpen, isIn = () => true) {
  const rows = [];
  const push = (stack, places, level) => {
    const shown = places.filter(isIn);
    for (let i = shown.length - 1; i >= 0; i -= 1) {
      stack.push({ place: shown[i], level, position: i + 1, size: shown.length });
    }
  };
  const stack = [];
  push(stack, model.roots, 1);
  while (stack.length > 0) {
    const row = stack.pop();
    row.hasChildren = model.childrenOf(row.place).some(isIn);
    row.isOpen = row.hasChildren && isOpen(row.place);
    rows.push(row);
    if (row.isOpen) push(stack, model.childrenOf(row.place), row.level + 1);
  }
  return rows;
}

/** What a search leaves of the tree: what is found, and the sets above. */
export function withAncestors(model, marks) {
  const kept = new Uint8Array(marks);
  marks.forEach((mark, place) => {
    if (!mark) return;
    for (let up = model.parentOf(place); up !== undefined && !kept[up]; up = model.parentOf(up)) {
      kept[up] = 1;
    }
  });
  return kept;
}
