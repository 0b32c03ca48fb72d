#pragma once

#include "editing/WriteDocument.h"
#include "editing/apply/ClipEditor.h"
#include "tests/mxf/rewrite/CarryOut.h"

namespace Corvid::Testing {

/// A clip in memory that is edited.
struct EditedClip {
    explicit EditedClip(Bytes content)
        : bytes(std::move(content)), source(bytes.data(), bytes.size()),
          editor(source, MetaMetadata::Dictionary::builtIn(), warnings) {}

    /// Plans what a document says.
    Editing::EditPlan plan(const std::string& document, const Editing::EditOptions& options = {});

    /// The clip after the edit.
    Bytes after(const Editing::EditPlan& plan) const { return carryOut(bytes, plan.rewrite); }
    Bytes after(const std::string& document, const Editing::EditOptions& options = {}) {
        return after(plan(document, options));
    }

    Bytes bytes;
    DataIO::MemorySource source;
    mxf::NoWarnings warnings;
    Editing::ClipEditor editor;
};

/// The document of a clip.
std::string documentOf(const Bytes& clip, const Editing::DocumentContent& content = {});

/// The text with another in the place of one, which it must have.
std::string replaced(std::string text, const std::string& what, const std::string& by);

/// An Identification that is always the same.
Editing::Modification testModification();

/// "changed TimelineTrack TrackName", "added Identification" and so on, one a line.
std::string linesOf(const Editing::Changes& changes);

} // namespace Corvid::Testing
