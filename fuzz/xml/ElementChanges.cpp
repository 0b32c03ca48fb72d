// Removes elements, repeats them, or moves them elsewhere.

#include "fuzz/xml/Changes.h"

#include <algorithm>

namespace Corvid::Fuzzing {

namespace {

using Kind = Piece::Kind;

std::ptrdiff_t offset(std::size_t index) { return static_cast<std::ptrdiff_t>(index); }

/// An element: its first piece, and the one after its last.
struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
};

Pieces copyOf(const Pieces& pieces, const Range& range) {
    return {pieces.begin() + offset(range.begin), pieces.begin() + offset(range.end)};
}

void erase(Pieces& pieces, const Range& range) {
    pieces.erase(pieces.begin() + offset(range.begin), pieces.begin() + offset(range.end));
}

/// An element, as a rule not the root. Those with attributes, which are sets and links, come more
/// often than the many that hold a value.
Range oneElement(const Pieces& pieces, Random& random) {
    std::vector<std::size_t> elements = elementsOf(pieces);
    if (elements.empty()) {
        return {};
    }
    if (elements.size() > 1 && !onceIn(50, random)) {
        elements.erase(elements.begin());
    }
    std::size_t chosen = oneOf(elements, random);
    if (onceIn(2, random)) {
        elements.erase(
            std::remove_if(elements.begin(), elements.end(),
                           [&](std::size_t each) { return pieces[each].attributes.empty(); }),
            elements.end());
        chosen = elements.empty() ? chosen : oneOf(elements, random);
    }
    return {chosen, endsOf(pieces)[chosen]};
}

/// Where an element can be put: in front of another, or into it as its first or last.
std::size_t onePlace(const Pieces& pieces, Random& random) {
    const Range beside = oneElement(pieces, random);
    if (beside.end < beside.begin + 2 || onceIn(2, random)) {
        return beside.begin;
    }
    return onceIn(2, random) ? beside.begin + 1 : beside.end - 1;
}

void remove(Pieces& pieces, Random& random) { erase(pieces, oneElement(pieces, random)); }

void doubleOne(Pieces& pieces, Random& random) {
    const Range range = oneElement(pieces, random);
    insert(pieces, range.end, copyOf(pieces, range));
}

void move(Pieces& pieces, Random& random) {
    const Range range = oneElement(pieces, random);
    const Pieces moved = copyOf(pieces, range);
    erase(pieces, range);
    insert(pieces, onePlace(pieces, random), moved);
}

void copy(Pieces& pieces, Random& random) {
    const Pieces copied = copyOf(pieces, oneElement(pieces, random));
    insert(pieces, onePlace(pieces, random), copied);
}

void swapTwo(Pieces& pieces, Random& random) {
    Range first = oneElement(pieces, random);
    Range second = oneElement(pieces, random);
    if (second.begin < first.begin) {
        std::swap(first, second);
    }
    if (first.end > second.begin) {
        return; // one is in the other
    }
    const Pieces last = copyOf(pieces, second);
    erase(pieces, second);
    insert(pieces, second.begin, copyOf(pieces, first));
    erase(pieces, first);
    insert(pieces, first.begin, last);
}

/// Puts tags around pieces.
void wrapIn(Pieces& pieces, const Range& range, Piece tag, std::size_t times) {
    tag.kind = Kind::start;
    insert(pieces, range.end, Pieces(times, Piece{Kind::end, tag.name, {}, {}}));
    insert(pieces, range.begin, Pieces(times, tag));
}

void wrap(Pieces& pieces, Random& random) {
    const Range outer = oneElement(pieces, random);
    const Range inner = oneElement(pieces, random);
    if (outer.end != 0 && inner.end != 0) {
        wrapIn(pieces, inner, Piece(pieces[outer.begin]), 1);
    }
}

/// About as deep as sets and elements may be, and deeper.
void nestDeeply(Pieces& pieces, Random& random) {
    constexpr std::size_t depths[] = {2, 16, 255, 256, 257, 4093, 4096};
    const Range range = oneElement(pieces, random);
    if (range.end != 0) {
        wrapIn(pieces, range, Piece(pieces[range.begin]), oneOf(depths, random));
    }
}

void unwrap(Pieces& pieces, Random& random) {
    const Range range = oneElement(pieces, random);
    if (range.end >= range.begin + 2) {
        erase(pieces, {range.end - 1, range.end});
        erase(pieces, {range.begin, range.begin + 1});
    }
}

void rename(Pieces& pieces, const Range& range, const std::string& name) {
    pieces[range.begin].name = name;
    if (pieces[range.end - 1].kind == Kind::end) {
        pieces[range.end - 1].name = name;
    }
}

void renameLikeAnother(Pieces& pieces, Random& random) {
    const Range range = oneElement(pieces, random);
    const Range other = oneElement(pieces, random);
    if (range.end != 0 && other.end != 0) {
        rename(pieces, range, std::string(pieces[other.begin].name));
    }
}

/// Makes a link of what is none, and the other way round.
void renameToLink(Pieces& pieces, Random& random) {
    constexpr std::string_view ending = "_REF";
    const Range range = oneElement(pieces, random);
    if (range.end == 0) {
        return;
    }
    std::string name = pieces[range.begin].name;
    const auto at = name.size() < ending.size() ? 0 : name.size() - ending.size();
    rename(pieces, range,
           std::string_view(name).substr(at) == ending ? name.substr(0, at) : name.append(ending));
}

} // namespace

const std::array<Change, 10> elementChanges = {{
    {"an element is removed", remove},
    {"an element is there twice", doubleOne},
    {"an element moves", move},
    {"an element is copied elsewhere", copy},
    {"two elements change places", swapTwo},
    {"an element gets another around it", wrap},
    {"an element is nested deeply in itself", nestDeeply},
    {"an element loses its tags", unwrap},
    {"an element gets the name of another", renameLikeAnother},
    {"an element becomes a link or loses that", renameToLink},
}};

void takeOver(Pieces& pieces, const Pieces& donor, Random& random) {
    const std::vector<std::size_t> theirs = indexesOf(donor, {Kind::instruction});
    if (!theirs.empty() && onceIn(8, random)) {
        const Piece& instruction = donor[oneOf(theirs, random)];
        const std::vector<std::size_t> ours = indexesOf(pieces, {Kind::instruction});
        insert(pieces, ours.empty() ? 0 : oneOf(ours, random) + 1, {instruction});
        return;
    }
    const Pieces taken = copyOf(donor, oneElement(donor, random));
    if (onceIn(2, random)) {
        const Range replaced = oneElement(pieces, random);
        erase(pieces, replaced);
        insert(pieces, replaced.begin, taken);
    } else {
        insert(pieces, onePlace(pieces, random), taken);
    }
}

std::vector<std::size_t> indexesOf(const Pieces& pieces, std::initializer_list<Piece::Kind> kinds) {
    std::vector<std::size_t> indexes;
    for (std::size_t i = 0; i != pieces.size(); ++i) {
        if (std::find(kinds.begin(), kinds.end(), pieces[i].kind) != kinds.end()) {
            indexes.push_back(i);
        }
    }
    return indexes;
}

std::vector<std::size_t> elementsOf(const Pieces& pieces) {
    return indexesOf(pieces, {Kind::start, Kind::empty});
}

void insert(Pieces& pieces, std::size_t at, const Pieces& added) {
    pieces.insert(pieces.begin() + offset(at), added.begin(), added.end());
}

} // namespace Corvid::Fuzzing
