#pragma once

#include "host/mxf/rewrite/FillRoom.h"
#include "host/mxf/rewrite/ObjectDirectory.h"
#include "host/mxf/rewrite/Segments.h"
#include "host/mxf/rewrite/SetCoding.h"

namespace Corvid::mxf {

class EditIndex;

/// One copy of header metadata after an edit. Sets and other KLVs that do not change keep their
/// bytes; all keep their place as far as there is room.
class CORVID_EXPORT EditedHeader {
public:
    /// Codes what changes.
    /// @param layout  borrowed; must outlive the object, as the edit need not.
    /// @throws InvalidArgument  the edit names what is not there, or names something twice.
    /// @throws InvalidFormat    the primer pack can't be continued, or a directory of objects can't
    ///                          follow.
    /// @throws LimitExceeded    a value or a set is too long, or all dynamic tags are in use.
    EditedHeader(const HeaderLayout& layout, const HeaderEdit& edit);

    /// Finds a place for everything.
    ///
    /// Room comes from fill, in which a gap of 1 to 16 bytes can't remain: that goes to another
    /// fill item, or else a set that changes gets a longer form of its length.
    /// @param extra  bytes that the metadata has beside those that it has in the file.
    /// @param shift  bytes by which the place of the metadata in the file moves.
    /// @return how many bytes are missing at least; 0 where everything has its place.
    std::uint64_t fit(std::uint64_t extra = 0, std::uint64_t shift = 0);

    /// Whether the metadata lists where its sets are, so that it changes where it moves.
    bool hasOffsets() const noexcept { return directory_.has_value(); }

    /// All bytes of the metadata but the values of fill, at their places in the file; after fit()
    /// gave 0, and valid as long as the object and the layout.
    Segments segments() const;

    /// The same of the metadata as the file has it.
    /// @param shift  as that of fit().
    static Segments segmentsOf(const HeaderLayout& layout, std::uint64_t shift = 0);

private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    struct Piece {
        std::size_t item = none; ///< its number in the layout; none for what is new
        bool isFill = false;
        bool isAnew = false;    ///< it has bytes of its own, not those of the layout
        bool isOffsets = false; ///< it is the directory of objects, or the root set
        KLV::Key key;
        unsigned char octets = 4; ///< of its length
        Bytes value;
        std::optional<Types::UUID> instance; ///< of a new set, where the directory lists it
        std::uint64_t size = 0;              ///< of the whole KLV
        std::uint64_t offset = 0;            ///< in the file
        Bytes coded;                         ///< key, length, value; of fill without its value
    };

    static Piece anew(std::size_t item, const KLV::Key& key, unsigned char octets, Bytes value);
    static void code(Piece& piece);

    void addItem(std::size_t number, const EditIndex& plan);
    void addNewSets(std::size_t after, const EditIndex& plan);
    void addFill(std::size_t item);
    void takeDirectory(const EditIndex& plan);
    Templates::vector<FillSlot> slots(std::uint64_t extra) const;
    bool lengthen(std::uint64_t bytes);
    void place(const Templates::vector<std::uint64_t>& fill, std::uint64_t shift);
    Piece& pieceOf(std::size_t item);
    void fillDirectory();

    const HeaderLayout& layout_;
    TagGiver tags_;
    Templates::vector<Piece> pieces_;
    std::optional<ObjectDirectory> directory_;
    Templates::vector<ObjectDirectory::Entry> listed_; ///< what the directory will list
};

} // namespace Corvid::mxf
