import { useEffect, useState } from 'preact/hooks';

const placeOf = (hash) => {
  const found = /^#(byte|before)-(\d+)$/.exec(hash);
  return found ? { byte: Number(found[2]), isBefore: found[1] === 'before' } : {};
};

/**
 * The byte of the file, or of the one that it is compared with, that the page's address names, and how to
 * go to another without a step back.
 */
export function usePlace() {
  const [place, setPlace] = useState(() => placeOf(location.hash));
  useEffect(() => {
    const follow = () => setPlace(placeOf(location.hash));
    addEventListener('hashchange', follow);
    return () => removeEventListener('hashchange', follow);
  }, []);
  const replace = (hash) => {
    history.replaceState(history.state, '', hash);
    setPlace(placeOf(hash));
  };
  return [place, replace];
}
