#include "Script/Step.h"

#include "Common/Numbers.h"
#include "Common/Trace.h"
#include "Script/CRunState.h"

CStep::CStep(CRunState &main, const std::string &text) : mMain(main), mFields(";", text)
{
    mCommand = mFields.First();
}

std::string CStep::Plain()
{
    return mFields.Next();
}

std::string CStep::Expanded()
{
    return mMain.ExpandMacros(mFields.Next());
}

int32_t CStep::Number()
{
    return DecimalNumber(mFields.Next());
}

std::string CStep::PlainAgain()
{
    return mFields.Current();
}

std::string CStep::ExpandedAgain()
{
    return mMain.ExpandMacros(mFields.Current());
}

void CStep::TakeTarget()
{
    mJump = mMain.ConditionalTarget(mFields.Next());
}

void BranchOn(CStep &step, bool answer, const char *wordsWhenTrue, const char *wordsWhenFalse)
{
    const char *const words = answer ? wordsWhenTrue : wordsWhenFalse;
    if (words != nullptr) {
        trace(7, "%s\n", words);
    }
    if (answer) {
        step.TakeTarget();
    }
}
