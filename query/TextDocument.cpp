#include "query/TextDocument.h"

#include "platform/Error.h"

namespace tessel {

bool TextDocument::Open(const std::string& path) {
  const Help help(global_);
  DecodedText decoded;
  try {
    decoded = DecodeText(global_.TheFiles().ReadWhole(path));
  } catch (const Error& error) {
    help.Show("Error opening " + error.Description(), MessageIcon::Exclamation);
    return false;
  }
  encoding_ = decoded.encoding;
  box_.SetText(decoded.text);
  if (ChangesEncoding(encoding_))
    help.Show(path + " is not UTF-8 text. It was read as " + std::string(EncodingName(encoding_)) +
                  "; saving it will write UTF-8.",
              MessageIcon::Information);
  return true;
}

bool TextDocument::Write(const std::string& path, std::string* reason) const {
  try {
    global_.TheFiles().ReplaceWhole(path, EncodeText(box_.Text(), encoding_), false);
    return true;
  } catch (const Error& error) {
    if (reason != nullptr) *reason = error.Description();
    return false;
  }
}

bool TextDocument::Save(const std::string& path) const {
  std::string reason;
  if (Write(path, &reason)) return true;
  Help(global_).Show("Error saving " + reason, MessageIcon::Exclamation);
  return false;
}

}  // namespace tessel
