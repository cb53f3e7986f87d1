#include "logic/text/TextDocument.h"

#include "contract/base/Error.h"

namespace tessel {

bool TextDocument::Read(const std::string& path, bool undoable) {
  const Help help(global_);
  DecodedText decoded;
  std::string stamp;
  try {
    std::string bytes = global_.TheFiles().ReadWhole(path);
    stamp = StampOf(bytes);
    decoded = DecodeText(std::move(bytes));
  } catch (const Error& error) {
    help.Show("Error opening " + error.Description(), MessageIcon::Exclamation);
    return false;
  }
  origin_ = {path, std::move(stamp), decoded.encoding};
  Replace(decoded.text, undoable);
  if (ChangesEncoding(origin_.encoding))
    help.Show(path + " is not UTF-8 text. It was read as " +
                  std::string(EncodingName(origin_.encoding)) + "; saving it will write UTF-8.",
              MessageIcon::Information);
  return true;
}

void TextDocument::Replace(const std::string& text, bool undoable) {
  if (!undoable) return box_.SetText(text);
  box_.Select(0, box_.Text().size());
  box_.SetSelText(text);
  box_.Select(0, 0);
}

bool TextDocument::Write(const std::string& path, std::string* reason) const {
  try {
    global_.TheFiles().ReplaceWhole(path, Bytes(), false);
    return true;
  } catch (const Error& error) {
    if (reason != nullptr) *reason = error.Description();
    return false;
  }
}

bool TextDocument::Save(const std::string& path) {
  std::string reason;
  if (Write(path, &reason)) {
    origin_.path = path;
    origin_.stamp = StampOf(Bytes());
    return true;
  }
  Help(global_).Show("Error saving " + reason, MessageIcon::Exclamation);
  return false;
}

FileState TextDocument::CompareWithFile() const {
  const Files& files = global_.TheFiles();
  try {
    const std::string bytes = files.ReadWhole(origin_.path);
    const bool same = StampOf(bytes) == origin_.stamp || bytes == Bytes();
    return same ? FileState::Same : FileState::Changed;
  } catch (const Error&) {
    return files.FileExists(origin_.path) ? FileState::Changed : FileState::Gone;
  }
}

}  // namespace tessel
