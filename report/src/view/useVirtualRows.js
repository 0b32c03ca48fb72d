import { Virtualizer, elementScroll, observeElementOffset, observeElementRect } from '@tanstack/virtual-core';
import { useEffect, useLayoutEffect, useReducer, useState } from 'preact/hooks';

const overscan = 12;

/** Of many rows of one height in a scrolling element, those that are to be seen. */
export function useVirtualRows(count, rowHeight, scrollElement) {
  const [, render] = useReducer((times) => times + 1, 0);
  const options = {
    count,
    overscan,
    estimateSize: () => rowHeight,
    getScrollElement: () => scrollElement.current,
    observeElementRect,
    observeElementOffset,
    scrollToFn: elementScroll,
    onChange: () => render(),
  };
  const [virtualizer] = useState(() => new Virtualizer(options));
  virtualizer.setOptions(options);
  useEffect(() => virtualizer._didMount(), [virtualizer]);
  useLayoutEffect(() => virtualizer._willUpdate());
  useLayoutEffect(() => virtualizer.measure(), [virtualizer, rowHeight]);
  return virtualizer;
}
