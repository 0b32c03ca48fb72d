import { visibleRows } from './rows.js';

/** What a set or a property is in the second clip, as people read it; signs that differ in shape. */
export const changes = {
  added: { sign: '+', words: 'added' },
  removed: { sign: '\u2212', words: 'removed' },
  changed: { sign: '\u2260', words: 'changed' },
};

/** The byte that counts versions takes no part where labels are compared (SMPTE ST 336). */
const withoutVersion = (label) => label.replace(/^((?:[0-9a-f]{2}\.){7})[0-9a-f]{2}\./, '$100.');

/** What a property is known by in both clips. */
const keyOf = ({ definition, label, raw, name }) => {
  const known = definition?.label ?? label;
  return known ? withoutVersion(known) : (raw?.tag ?? name);
};

/** Properties with their keys; of several of one label each has its number. */
function keyed(rows) {
  const numbers = new Map();
  return rows.map((row) => {
    const key = keyOf(row);
    const number = numbers.get(key) ?? 0;
    numbers.set(key, number + 1);
    return { row, key, place: `${key} ${number}` };
  });
}

/**
 * Two clips in one tree: that of the second, in which the sets that only the first has are below the sets
 * that owned them. Sets are known by their places in the model of the second; those that are only in the
 * first follow its own.
 */
export class Comparison {
  /**
   * @param model   of the second clip. It gets the sets that only the first has.
   * @param before  the model of the first clip.
   */
  constructor(model, before, { pairs, changed, otherInstanceUIDs }) {
    this.before = before;
    this.otherInstanceUIDs = otherInstanceUIDs;
    this.ownSets = model.sets.length;
    this.pairs = pairs;
    this.changed = new Map(changed.map(([place, labels]) => [place, new Set(labels.map(withoutVersion))]));
    this.places = new Int32Array(before.sets.length).fill(-1);
    pairs.forEach((old, place) => {
      if (old !== null) this.places[old] = place;
    });
    this.removed = [];
    for (const { place: old } of visibleRows(before, () => true)) {
      if (this.places[old] !== -1) continue;
      const owner = before.parentOf(old);
      this.places[old] = model.addSet({ ...before.sets[old], isRemoved: true }, owner === undefined ? undefined : this.places[owner], before.owners[old]);
      this.removed.push(old);
    }
    // What the first clip says leads to the sets that are in the tree.
    this.earlier = Object.create(model, {
      find: {
        value: (id) => {
          const old = before.find(id);
          return old === undefined ? undefined : this.places[old];
        },
      },
    });
  }

  /** What a set is: added, removed, changed, or undefined where it says the same. */
  changeOf(place) {
    if (place >= this.ownSets) return 'removed';
    if (this.pairs[place] === null) return 'added';
    return this.changed.has(place) ? 'changed' : undefined;
  }

  /** The set of the first clip that a set belongs together with, or that it is; undefined for a new one. */
  oldPlace(place) {
    return place >= this.ownSets ? this.removed[place - this.ownSets] : (this.pairs[place] ?? undefined);
  }

  /** The set that held a byte of the first clip. */
  at(byte) {
    const old = this.before.at(byte);
    return old === undefined ? undefined : this.places[old];
  }

  /** Marks of the sets that differ, and how many of each kind there are. */
  differences(number) {
    const marks = new Uint8Array(number);
    const counts = { added: 0, removed: 0, changed: 0 };
    for (let place = 0; place !== number; place += 1) {
      const change = this.changeOf(place);
      if (change === undefined) continue;
      marks[place] = 1;
      counts[change] += 1;
    }
    return { marks, counts };
  }

  /** The properties of a set with what became of each; of one that changed the value before, too. */
  rowsOf(model, place) {
    const change = this.changeOf(place);
    if (change === 'removed') return this.before.propertiesOf(this.oldPlace(place));
    const rows = model.propertiesOf(place);
    if (change !== 'changed') return rows;
    const differ = this.changed.get(place);
    const old = new Map(keyed(this.before.propertiesOf(this.oldPlace(place))).map((each) => [each.place, each]));
    const result = keyed(rows).map(({ row, key, place: where }) => {
      const earlier = old.get(where);
      old.delete(where);
      if (earlier === undefined) return { ...row, change: 'added' };
      return differ.has(key) ? { ...row, change: 'changed', earlier: earlier.row } : row;
    });
    return [...result, ...[...old.values()].map(({ row }) => ({ ...row, change: 'removed' }))];
  }
}
