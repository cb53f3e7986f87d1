#include "logic/app/Main.h"

namespace tessel {

void Program::Main() {
  global_.DetectJetProvider();
  global_.SetHelpFile();
  vocabulary_.LoadVocabulary();
  frame_ = std::make_unique<frmMDI>(global_, vocabulary_, tags_);
  frame_->Show();
}

}  // namespace tessel
