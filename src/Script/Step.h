// One step being run: its fields in order, and what it decides about the next step.
#pragma once

#include <cstdint>
#include <string>

#include "Common/TokenSplitter.h"

class CRunState;

class CStep {
public:
    CStep(CRunState &main, const std::string &text);

    // The run that the step belongs to.
    CRunState &Main() const { return mMain; }

    // The command word: the first field, as it stands.
    const std::string &Command() const { return mCommand; }

    // The step's next field; each call moves on by one. A field past the last is empty (0 as a number).
    std::string Plain();    // as it stands
    std::string Expanded(); // macros expanded
    int32_t Number();       // decimal as atoi reads it, no expansion

    // The field read last, once more; the command word when none was read.
    std::string PlainAgain();
    std::string ExpandedAgain();

    // Reads the next field as a jump target: calls a group at once or keeps the label for the interpreter.
    void TakeTarget();

    // Ends the group behind this step.
    void EndGroup() { mEndsGroup = true; }

    bool EndsGroup() const { return mEndsGroup; }
    const std::string &Jump() const { return mJump; }

private:
    CRunState &mMain;
    TokenSplitter mFields;
    std::string mCommand;
    std::string mJump;
    bool mEndsGroup = false;
};

// The shared shape of conditions: traces the words of the outcome at level 7, takes the target when the
// answer is yes. Words may be null where a command has none.
void BranchOn(CStep &step, bool answer, const char *wordsWhenTrue, const char *wordsWhenFalse);
