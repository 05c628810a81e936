// The plan for programs.
#include <nlohmann/json.hpp>

#include "Pack/CodePage.h"
#include "Pack/PlanCommand.h"

namespace {

using Json = nlohmann::ordered_json;

std::string Utf8(const std::string &text)
{
    return gCodePage.ToUtf8(text);
}

const char *Word(EAnswer answer)
{
    return answer == EAnswer::EYes ? "yes" : answer == EAnswer::ENo ? "no" : "open";
}

Json JsonOf(const PlanBlock &block);

Json JsonOf(const PlanNode::Course &course)
{
    Json json = {{"steps", JsonOf(course.mSteps)}};
    if (!course.mEnd.empty()) {
        json["end"] = course.mEnd;
    }
    return json;
}

Json JsonOf(const PlanNode &node)
{
    Json json;
    if (node.mKind == EPlanNode::EGroup) {
        json = {{"group", Utf8(node.mGroup)}, {"file", Utf8(node.mFile)}, {"line", node.mLine}};
        json["steps"] = JsonOf(node.mInner);
        return json;
    }
    json = {{"step", Utf8(node.mCommand)}, {"file", Utf8(node.mFile)}, {"line", node.mLine}};
    json["text"] = Utf8(node.mText);
    json["does"] = PlanVerb(node);
    for (const std::string &field : node.mFields) {
        json["fields"].push_back(Utf8(field));
    }
    if (node.mTests) {
        json["answer"] = Word(node.mAnswer);
    }
    if (node.mActs) {
        json["acts"] = Word(*node.mActs);
    }
    if (!node.mNote.empty()) {
        json["note"] = Utf8(node.mNote);
    }
    if (!node.mInner.empty()) {
        json["groups"] = JsonOf(node.mInner);
    }
    if (node.mHasCourses) {
        json["yes"] = JsonOf(node.mYes);
        json["no"] = JsonOf(node.mNo);
        json["meet"] = node.mMeetLine;
    }
    return json;
}

Json JsonOf(const PlanBlock &block)
{
    Json json = Json::array();
    for (const PlanNode &node : block) {
        json.push_back(JsonOf(node));
    }
    return json;
}

} // namespace

std::string PlanVerb(const PlanNode &step)
{
    if (step.mInfo == nullptr) {
        return step.mFields.empty() ? "nothing" : "calls group";
    }
    return EffectWord(step.mInfo->mEffect);
}

void WritePlanJson(const Plan &plan, std::ostream &out)
{
    Json json = {{"machine", Utf8(plan.mMachine)}, {"opening", plan.mOpening}, {"group", Utf8(plan.mGroup)}};
    json["plan"] = JsonOf(plan.mSteps);
    json["questions"] = Json::array();
    for (const PlanQuestion &question : plan.mQuestions) {
        json["questions"].push_back({{"text", Utf8(question.mText)},
                                     {"yes", Utf8(question.mOption)},
                                     {"no", Utf8(question.mOptionNo)},
                                     {"file", Utf8(question.mFile)},
                                     {"line", question.mLine},
                                     {"count", question.mCount}});
    }
    json["cut"] = plan.mCut;
    json["endless"] = plan.mEnd;
    json["exit"] = plan.mExitCodes;
    out << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}
