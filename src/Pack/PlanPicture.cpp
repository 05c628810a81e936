// Groups stand in columns by how deep they are called, in the order in which the run comes to them.
#include "Pack/PlanPicture.h"

#include <algorithm>
#include <map>
#include <vector>

#include "Pack/PlanWords.h"

namespace {

constexpr int kWidth = 190, kHeight = 46, kAcross = 80, kDown = 16, kMargin = 12;
constexpr size_t kMostLetters = 22;

struct Box {
    std::string mFile;
    std::string mGroup;
    bool mMissing = false;
    size_t mColumn = 0;
    int mX = 0, mY = 0;
    size_t mActs = 0, mMaybe = 0, mRuns = 0;
};

// How a call comes about: always, behind a condition that is answered, on a course of one that is not.
enum class ECall { EAlways, ECondition, EMaybe };

struct Arrow {
    size_t mFrom = 0, mTo = 0;
    ECall mCall = ECall::EMaybe;
    std::string mTitle;
    size_t mCount = 0;
};

class CGroupPicture {
public:
    explicit CGroupPicture(const Plan &plan) { Walk(plan.mSteps, kNobody, 0, ECall::EAlways, nullptr); }

    std::string Draw();

private:
    static constexpr size_t kNobody = static_cast<size_t>(-1);

    void Walk(const PlanBlock &block, size_t caller, size_t column, ECall call, const PlanNode *step);
    void TakeStep(const PlanNode &step, size_t group, size_t column, bool maybe);
    size_t BoxOf(const PlanNode &group, size_t column);
    void Place();
    std::string Curve(const Arrow &arrow) const;

    std::vector<Box> mBoxes;
    std::vector<Arrow> mArrows;
    std::map<std::string, size_t> mByName;
    std::map<std::pair<size_t, size_t>, size_t> mByEnds;
};

size_t CGroupPicture::BoxOf(const PlanNode &group, size_t column)
{
    const auto [known, added] = mByName.emplace(PlanAnchor(group.mFile, group.mGroup), mBoxes.size());
    if (added) {
        Box box;
        box.mFile = group.mFile;
        box.mGroup = group.mGroup;
        box.mMissing = group.mFile.empty();
        box.mColumn = column;
        mBoxes.push_back(box);
    }
    ++mBoxes[known->second].mRuns;
    return known->second;
}

void CGroupPicture::TakeStep(const PlanNode &step, size_t group, size_t column, bool maybe)
{
    if (group != kNobody) {
        const char mark = step.mActs ? PlanMark(step) : ' ';
        mBoxes[group].mActs += mark == '+' && !maybe ? 1 : 0;
        mBoxes[group].mMaybe += mark == '?' || (mark == '+' && maybe) ? 1 : 0;
    }
    const bool condition = step.mInfo != nullptr && IsTest(step.mInfo->mEffect);
    const ECall call = maybe ? ECall::EMaybe : condition ? ECall::ECondition : ECall::EAlways;
    Walk(step.mInner, group, column, call, &step);
    for (const PlanNode::Course *course : {&step.mYes, &step.mNo}) {
        for (const PlanNode &node : course->mSteps) {
            if (node.mKind == EPlanNode::EStep) {
                TakeStep(node, group, column, true);
            }
        }
        Walk(course->mSteps, group, column, ECall::EMaybe, &step);
    }
}

// Takes the groups of a block; the steps of each are taken with it.
void CGroupPicture::Walk(const PlanBlock &block, size_t caller, size_t column, ECall call, const PlanNode *step)
{
    for (const PlanNode &node : block) {
        if (node.mKind != EPlanNode::EGroup) {
            continue;
        }
        const size_t box = BoxOf(node, column);
        if (caller != kNobody) {
            const auto [known, added] = mByEnds.emplace(std::make_pair(caller, box), mArrows.size());
            if (added) {
                mArrows.push_back({caller, box, call, {}, 0});
            }
            Arrow &arrow = mArrows[known->second];
            arrow.mCall = std::min(arrow.mCall, call);
            if (++arrow.mCount <= 8 && step != nullptr) {
                arrow.mTitle += (arrow.mTitle.empty() ? "" : "\n") + PlanPlace(*step) + " " + PlanShown(step->mText);
            }
        }
        for (const PlanNode &inner : node.mInner) {
            TakeStep(inner, box, column + 1, call == ECall::EMaybe);
        }
    }
}

void CGroupPicture::Place()
{
    std::map<size_t, int> nextY;
    for (Box &box : mBoxes) {
        int &y = nextY.emplace(box.mColumn, kMargin).first->second;
        // As high as the group that calls it first, when there is room.
        for (const Arrow &arrow : mArrows) {
            if (&mBoxes[arrow.mTo] == &box && mBoxes[arrow.mFrom].mColumn < box.mColumn) {
                y = std::max(y, mBoxes[arrow.mFrom].mY);
                break;
            }
        }
        box.mX = kMargin + static_cast<int>(box.mColumn) * (kWidth + kAcross);
        box.mY = y;
        y += kHeight + kDown;
    }
}

std::string CGroupPicture::Curve(const Arrow &arrow) const
{
    const Box &from = mBoxes[arrow.mFrom], &to = mBoxes[arrow.mTo];
    const int y1 = from.mY + kHeight / 2, y2 = to.mY + kHeight / 2;
    const auto point = [](int x, int y) { return std::to_string(x) + " " + std::to_string(y); };
    if (to.mColumn > from.mColumn) {
        const int x1 = from.mX + kWidth, x2 = to.mX - 7;
        return "M" + point(x1, y1) + "C" + point(x1 + kAcross / 2, y1) + " " + point(x2 - kAcross / 2, y2) + " " +
               point(x2, y2);
    }
    // Back to an earlier column or down its own: around the right side.
    const int x1 = from.mX + kWidth, x2 = to.mX + kWidth + 7, out = std::max(x1, x2) + kAcross * 2 / 3;
    return "M" + point(x1, y1 + 8) + "C" + point(out, y1 + 8) + " " + point(out, y2) + " " + point(x2, y2);
}

std::string CGroupPicture::Draw()
{
    if (mBoxes.size() < 2) {
        return std::string();
    }
    Place();
    int width = 0, height = 0;
    for (const Box &box : mBoxes) {
        width = std::max(width, box.mX + kWidth + kMargin + kAcross / 2);
        height = std::max(height, box.mY + kHeight + kMargin);
    }
    const std::string w = std::to_string(width), h = std::to_string(height);
    std::string svg = "<svg class=picture viewBox=\"0 0 " + w + " " + h + "\" width=\"" + w + "\" height=\"" + h +
                      "\" role=img aria-label=\"How the groups call each other\">\n<defs>";
    for (const char *kind : {"always", "condition", "maybe"}) {
        svg += std::string("<marker id=\"end-") + kind +
               "\" viewBox=\"0 0 8 8\" refX=\"2\" refY=\"4\" markerWidth=\"8\" markerHeight=\"8\" "
               "markerUnits=\"userSpaceOnUse\" orient=\"auto\"><path class=\"" +
               kind + "\" d=\"M0 0L8 4L0 8z\"/></marker>";
    }
    svg += "</defs>\n";
    for (const Arrow &arrow : mArrows) {
        const std::string kind = arrow.mCall == ECall::EAlways      ? "always"
                                 : arrow.mCall == ECall::ECondition ? "condition"
                                                                    : "maybe";
        svg += "<path class=\"arrow " + kind + "\" marker-end=\"url(#end-" + kind + ")\" d=\"" + Curve(arrow) +
               "\"><title>" + PlanMarkup(arrow.mTitle) + (arrow.mCount > 8 ? "\n..." : "") + "</title></path>\n";
    }
    for (const Box &box : mBoxes) {
        const std::string x = std::to_string(box.mX), y = std::to_string(box.mY);
        std::string name = PlanShown(box.mGroup);
        const std::string whole = name;
        if (name.size() > kMostLetters) {
            size_t end = kMostLetters - 1;
            while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80) {
                --end;
            }
            name = name.substr(0, end) + "\xE2\x80\xA6";
        }
        std::string words =
            box.mMissing ? "no such group" : std::to_string(box.mActs) + (box.mActs == 1 ? " action" : " actions");
        words += box.mMaybe == 0 ? "" : ", " + std::to_string(box.mMaybe) + " maybe";
        words += box.mRuns < 2 ? "" : ", " + std::to_string(box.mRuns) + " times";
        svg += "<a href=\"#" + PlanMarkup(PlanAnchor(box.mFile, box.mGroup)) + "\"><g class=\"box" +
               (box.mMissing ? " missing" : "") + "\" transform=\"translate(" + x + " " + y + ")\"><title>" +
               PlanMarkup(whole + "  " + PlanShown(box.mFile)) + "</title><rect width=\"" + std::to_string(kWidth) +
               "\" height=\"" + std::to_string(kHeight) + "\" rx=\"7\"/><text x=\"12\" y=\"20\" class=name>" +
               PlanMarkup(name) + "</text><text x=\"12\" y=\"36\" class=sub>" + PlanMarkup(words) + "</text></g></a>\n";
    }
    return svg + "</svg>\n";
}

} // namespace

std::string PlanMarkup(const std::string &utf8)
{
    std::string safe;
    for (const char c : utf8) {
        switch (c) {
        case '<':
            safe += "&lt;";
            break;
        case '>':
            safe += "&gt;";
            break;
        case '&':
            safe += "&amp;";
            break;
        case '"':
            safe += "&quot;";
            break;
        default:
            safe += c;
        }
    }
    return safe;
}

std::string PlanAnchor(const std::string &file, const std::string &group)
{
    std::string name = "group-";
    for (const char c : PlanShown(file + "-" + group)) {
        const bool plain =
            (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' || c == '.';
        constexpr char kDigits[] = "0123456789abcdef";
        const auto byte = static_cast<unsigned char>(c);
        name += plain ? std::string(1, c) : std::string{'_', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return name;
}

std::string PlanPicture(const Plan &plan)
{
    return CGroupPicture(plan).Draw();
}
