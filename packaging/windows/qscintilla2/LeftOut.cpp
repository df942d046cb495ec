// What the control asks of the parts of QScintilla that are left out.
#include <Qsci/qsciscintilla.h>
#include <Scintilla.h>

int Scintilla_LinkLexers() { return 0; }

bool QsciScintilla::isAutoCompletionList() const { return false; } // Nothing is a QsciScintilla.
