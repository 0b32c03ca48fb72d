/** What a part of a file is, with the letter that stands for it in pictures. */
export const kinds = {
  runIn: { letter: 'U', name: 'Run-in' },
  pack: { letter: 'P', name: 'Partition pack' },
  metadata: { letter: 'M', name: 'Metadata' },
  index: { letter: 'I', name: 'Index' },
  essence: { letter: 'E', name: 'Essence' },
  stream: { letter: 'S', name: 'Generic stream' },
  fill: { letter: 'F', name: 'Fill' },
  randomIndex: { letter: 'R', name: 'Random index pack' },
  other: { letter: '?', name: 'Not known' },
};

const steps = 2000;

/**
 * The regions of a true strip: those that can be seen, and ticks for the others, no two of either
 * at one place.
 */
export function linear(regions, size) {
  const pieces = [];
  let lastTick = -1;
  for (const region of regions) {
    const from = region.begin / size;
    const width = (region.end - region.begin) / size;
    if (width * steps >= 4) {
      pieces.push({ region, from, width, isTick: false });
    } else {
      const tick = Math.round(from * steps);
      if (tick !== lastTick) pieces.push({ region, from, width, isTick: true });
      lastTick = tick;
    }
  }
  return pieces;
}

/** The first and last regions, and how many are left out between them. */
export function ends(regions, most) {
  if (regions.length <= most) return { first: regions, left: 0, last: [] };
  const half = Math.floor(most / 2);
  return {
    first: regions.slice(0, half),
    left: regions.length - 2 * half,
    last: regions.slice(-half),
  };
}

/** How many bytes each kind has. */
export function totals(regions) {
  const sums = new Map();
  for (const { kind, begin, end } of regions) {
    const sum = sums.get(kind) ?? { kind, regions: 0, bytes: 0 };
    sum.regions += 1;
    sum.bytes += end - begin;
    sums.set(kind, sum);
  }
  return [...sums.values()].sort((a, b) => b.bytes - a.bytes);
}
