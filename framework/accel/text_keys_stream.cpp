// The stream form of TextFrontEnd sequences: one text item, the key text.
#include <string>

#include "accel/text_keys.h"
#include "core/diagnostics.h"
#include "orvane/storage.h"

namespace Kf::Accel::Detail {

void TextSequence::Write(KfPerOStream& stream) {
  stream << FormatStrokes(strokes_);
}

void TextSequence::Read(KfPerIStream& stream) {
  std::string text;
  if (!(stream >> text)) return;  // nothing stored: keep the placeholder
  KeySequence parsed;
  std::string error;
  if (!TextFrontEnd::Parse(text, parsed, error)) {
    Kf::Detail::ReportError("TextFrontEnd", "stored key text not read: " + error);
    // Fail the stream (by reading past its end) so that whoever reads the
    // record sees it as incomplete rather than taking the placeholder.
    std::string rest;
    while (stream >> rest) {
    }
    return;
  }
  strokes_ = TextFrontEnd::Strokes(parsed);
}

}  // namespace Kf::Accel::Detail
