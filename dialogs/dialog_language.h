#pragma once

namespace velcoran::dialogs {

/// Romanian for Qt's own texts while it lives: made before a dialog of ours, gone after it. The host's texts
/// and its language stay as they are, and nobody is told of a change of language. May be nested; the window's thread
/// only.
class DialogLanguage {
public:
    DialogLanguage();
    ~DialogLanguage();
    DialogLanguage(const DialogLanguage&) = delete;
    DialogLanguage& operator=(const DialogLanguage&) = delete;
};

}  // namespace velcoran::dialogs
