import { Comparison } from './comparison.js';
import { textOf } from './values.js';

const none = -1;
const nobody = [];

/** Calls back for each reference in a value. */
function eachReference(value, call) {
  if (Array.isArray(value)) {
    for (const item of value) eachReference(item, call);
  } else if (value !== null && typeof value === 'object') {
    if (value.ref !== undefined) call(value);
  }
}

/** Where properties are in the file, from the text that the data have of them. */
function rawPlaces(raw, offset) {
  if (raw === '') return [];
  return raw.split(';').map((each) => {
    const [tag, at, length, hex] = each.split(' ');
    return { tag: `${tag.slice(0, 2)}.${tag.slice(2)}`, offset: offset + Number(at), length: Number(length), hex };
  });
}

const naming = /(Name|Title|Symbol)$/;

/**
 * The sets of a clip as a tree: a set is below the first one that owns it. Sets are known by their
 * places in the data.
 */
export class Model {
  constructor(data) {
    this.data = data;
    const { sets, floating, definitions, root } = data.metadata;
    this.sets = [...sets, ...floating];
    this.definitions = definitions;
    this.root = root?.ref;
    this.places = new Map();
    this.sets.forEach((set, place) => {
      if (set.id && !this.places.has(set.id)) this.places.set(set.id, place);
    });
    this.#grow();
    this.#order();
    this.comparison = data.comparison && new Comparison(this, new Model(data.comparison.before), data.comparison);
  }

  /** Adds a set that is in no byte of the file, below another one or as a tree of its own; its place. */
  addSet(set, owner, symbol) {
    const place = this.sets.push(set) - 1;
    if (place >= this.parents.length) {
      const parents = new Int32Array(2 * place + 16).fill(none);
      parents.set(this.parents);
      this.parents = parents;
    }
    if (owner === undefined) {
      this.roots.push(place);
    } else {
      this.parents[place] = owner;
      this.owners[place] = symbol;
      (this.children[owner] ??= []).push(place);
    }
    return place;
  }

  /** The places of the sets that a set owns, each with the property that it is in. */
  #ownedBy(set) {
    let owned;
    for (const symbol in set.properties) {
      if (!this.#owns(symbol)) continue;
      eachReference(set.properties[symbol], ({ ref }) => {
        const place = this.places.get(ref);
        if (place !== undefined) (owned ??= []).push({ place, symbol });
      });
    }
    return owned ?? nobody;
  }

  #owns(symbol) {
    let owns = this.owning.get(symbol);
    if (owns === undefined) {
      owns = this.definitions[symbol]?.valueType.includes('StrongReference') ?? false;
      this.owning.set(symbol, owns);
    }
    return owns;
  }

  /** Goes from the root to what it owns; what is then left over begins trees of its own. */
  #grow() {
    const number = this.sets.length;
    this.parents = new Int32Array(number).fill(none);
    this.owners = new Array(number);
    this.children = new Array(number);
    this.roots = [];
    this.owning = new Map();
    const owned = this.sets.map((set) => this.#ownedBy(set));
    const isOwned = new Uint8Array(number);
    for (const list of owned) for (const { place } of list) isOwned[place] = 1;

    const isSeen = new Uint8Array(number);
    const growFrom = (root) => {
      isSeen[root] = 1;
      this.roots.push(root);
      const open = [root];
      while (open.length > 0) {
        const parent = open.pop();
        for (const { place, symbol } of owned[parent]) {
          if (isSeen[place]) continue;
          isSeen[place] = 1;
          this.parents[place] = parent;
          this.owners[place] = symbol;
          (this.children[parent] ??= []).push(place);
          open.push(place);
        }
      }
    };
    const root = this.places.get(this.root);
    if (root !== undefined) growFrom(root);
    for (let place = 0; place !== number; place += 1) if (!isSeen[place] && !isOwned[place]) growFrom(place);
    // Only sets that own each other in a circle are left.
    for (let place = 0; place !== number; place += 1) if (!isSeen[place]) growFrom(place);
  }

  #order() {
    this.byOffset = Int32Array.from(this.sets.keys()).sort(
      (a, b) => this.sets[a].offset - this.sets[b].offset,
    );
  }

  find(id) {
    return this.places.get(id);
  }

  /** The set that holds a byte of the file. */
  at(byte) {
    let low = 0;
    let high = this.byOffset.length;
    while (low < high) {
      const middle = (low + high) >> 1;
      if (this.sets[this.byOffset[middle]].offset <= byte) low = middle + 1;
      else high = middle;
    }
    if (low === 0) return undefined;
    const place = this.byOffset[low - 1];
    const { offset, length } = this.sets[place];
    return byte < offset + length ? place : undefined;
  }

  childrenOf(place) {
    return this.children[place] ?? [];
  }

  parentOf(place) {
    return this.parents[place] === none ? undefined : this.parents[place];
  }

  /** The sets from the root down to one, without it. */
  pathTo(place) {
    const path = [];
    for (let up = this.parentOf(place); up !== undefined; up = this.parentOf(up)) path.push(up);
    return path.reverse();
  }

  isDark(place) {
    return this.sets[place].properties === undefined;
  }

  classOf(place) {
    return this.sets[place].class ?? this.sets[place].name ?? this.sets[place].key;
  }

  /** What tells a set from others of its class: a name, a number. */
  nameOf(place) {
    const properties = this.sets[place].properties ?? {};
    const parts = [];
    for (const symbol in properties) {
      const value = properties[symbol];
      if (typeof value === 'string' && value !== '' && naming.test(symbol)) {
        parts.push(value);
        break;
      }
    }
    if (properties.TrackID !== undefined) parts.push(textOf(properties.TrackID));
    return parts.join(' \u00b7 ');
  }

  /** What is said of a property once: by its class, too, where classes have different ones of that name. */
  definition(place, name) {
    return this.definitions[`${this.sets[place].class}/${name}`] ?? this.definitions[name];
  }

  /** The properties of a set for people, of two clips with what became of them. */
  rowsOf(place) {
    return this.comparison ? this.comparison.rowsOf(this, place) : this.propertiesOf(place);
  }

  /** The properties of a set in their order, then what does not belong to it, each with its bytes. */
  propertiesOf(place) {
    const { properties = {}, other = [], raw = '', offset } = this.sets[place];
    const places = rawPlaces(raw, offset);
    return [
      ...Object.entries(properties).map(([name, value], i) => ({
        name,
        value,
        definition: this.definition(place, name),
        raw: places[i],
      })),
      ...other.map(({ why, property, label, tag, value, ...bytes }, i) => ({
        name: property ?? label ?? `tag ${tag}`,
        value: value ?? bytes,
        why,
        label,
        definition: this.definition(place, property),
        raw: places[Object.keys(properties).length + i],
      })),
    ];
  }

  /** The sets that refer to a set. Looked for when first asked. */
  referrersOf(place) {
    this.referrers ??= this.#findReferrers();
    return this.referrers.get(place) ?? [];
  }

  #findReferrers() {
    const referrers = new Map();
    this.sets.forEach(({ properties }, from) => {
      for (const symbol in properties) {
        eachReference(properties[symbol], ({ ref }) => {
          const to = this.places.get(ref);
          if (to === undefined) return;
          const list = referrers.get(to);
          if (list === undefined) referrers.set(to, [from]);
          else if (list[list.length - 1] !== from) list.push(from);
        });
      }
    });
    return referrers;
  }

  property(place, symbol) {
    return place === undefined ? undefined : this.sets[place].properties?.[symbol];
  }

  /** The set that a property refers to, or the sets: those of the first references, so many of them. */
  targets(place, symbol, most = Infinity) {
    const value = this.property(place, symbol);
    const found = [];
    eachReference(Array.isArray(value) && value.length > most ? value.slice(0, most) : value, ({ ref }) => {
      const target = this.places.get(ref);
      if (target !== undefined) found.push(target);
    });
    return found;
  }
}

/** The address of a set in the page; of one that only the first of two clips has by its byte there. */
export const linkTo = (set) => `#${set.isRemoved ? 'before' : 'byte'}-${set.offset}`;
