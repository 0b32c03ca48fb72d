import { Model } from '../../src/data/model.js';

const definition = (valueType) => ({ label: '06.0e', name: null, document: null, type: null, valueType });

const definitions = {
  ContentStorageObject: definition('StrongReference'),
  Packages: definition('Batch(StrongReference)'),
  PackageTracks: definition('Array(StrongReference)'),
  TrackSegment: definition('StrongReference'),
  ComponentObjects: definition('Array(StrongReference)'),
  LinkedTo: definition('WeakReference'),
};

const ref = (id) => ({ ref: id, class: null });

/** A model of sets: {id: [class, properties]}; references are "#id", the first set is the root. */
export function modelOf(described) {
  const value = (each) =>
    Array.isArray(each) ? each.map(value) : typeof each === 'string' && each.startsWith('#') ? ref(each.slice(1)) : each;
  const sets = Object.entries(described).map(([id, [name, properties]], i) => ({
    class: name,
    id,
    offset: 100 * i,
    length: 100,
    properties: Object.fromEntries(Object.entries(properties).map(([symbol, each]) => [symbol, value(each)])),
  }));
  return new Model({ metadata: { root: ref(sets[0].id), sets, floating: [], definitions } });
}

/** A clip: tracks of the material package, each [class, properties, components], and other packages. */
export function clipOf(packages) {
  const described = { preface: ['Preface', { ContentStorageObject: '#storage' }] };
  described.storage = ['ContentStorage', { Packages: Object.keys(packages).map((id) => `#${id}`) }];
  for (const [id, { class: name = 'SourcePackage', tracks, packageID = id }] of Object.entries(packages)) {
    const names = tracks.map((_, i) => `${id}-${i + 1}`);
    described[id] = [name, { PackageID: packageID, PackageTracks: names.map((each) => `#${each}`) }];
    tracks.forEach(([trackClass, properties, components], i) => {
      const track = names[i];
      const parts = components.map((_, j) => `${track}-${j}`);
      described[track] = [trackClass, { TrackID: i + 1, TrackSegment: `#${track}-all`, ...properties }];
      const length = components.reduce((sum, [, each]) => sum + (each.ComponentLength ?? 0), 0);
      described[`${track}-all`] = ['Sequence', { ComponentLength: length, ComponentObjects: parts.map((each) => `#${each}`) }];
      components.forEach(([partClass, each], j) => {
        described[parts[j]] = [partClass, each];
      });
    });
  }
  return modelOf(described);
}
