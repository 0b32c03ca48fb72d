#pragma once

namespace Corvid::Editing {
struct DocumentMetadata;
class DocumentMistakes;
} // namespace Corvid::Editing

namespace Corvid::Tool {

class Messages;

/// Reports what people may want to know of a document that was read: sets that it holds more than
/// once, elements without a meaning, instructions that do not fit it, dark sets whose local tags
/// nothing explains.
void report(const Editing::DocumentMetadata& document, Messages& messages);

/// Reports each mistake as an error, in the order of the document.
void report(const Editing::DocumentMistakes& refusal, Messages& messages);

} // namespace Corvid::Tool
