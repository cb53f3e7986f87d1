#pragma once

namespace tessel {

class SqlEditor;

/// From now on an editor of a long text tells assistive tools its name and state, but not its
/// text: the component counts all characters before the caret at each of its moves, whether
/// anybody listens or not, which takes a second for 100 MB. May be called again.
void InstallLongTextAccess();

/// To be called when an editor's text was replaced.
void RenewTextAccess(SqlEditor& editor);

}  // namespace tessel
