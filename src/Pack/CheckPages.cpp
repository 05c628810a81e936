// The words of the window: those that its pages ask for, and whether they fit.
#include <algorithm>
#include <set>

#include "Common/StringUtilities.h"
#include "Installer/PreflightRules.h"
#include "Pack/CheckContext.h"
#include "Pack/PackMacros.h"
#include "Pack/PageFit.h"
#include "Script/Macros.h"
#include "Script/PackageKind.h"
#include "UI/PageLayout.h"
#include "UI/PageRules.h"

namespace {

constexpr int32_t kPageButtonWidth = 170; // of all pages but the agreement
constexpr int32_t kButtonEdge = 8;        // of its frame and the mark of the focus
constexpr size_t kLongestFontName = 31;
constexpr size_t kMostListed = 8;
constexpr const char *kLicenseWords[] = {"LicenseTitle", "LicenseText1", "LicenseText2",
                                         "LicenseFile",  "AcceptText",   "DeclineText"};
constexpr const char *kProgressWords[] = {"ProgressTitle", "InstallProgress"};

// The pages that a package of this kind can come to show.
std::vector<PageKeys> PagesOf(CPackageModel &model)
{
    const auto number = [&](const char *key) { return model.Number("MAIN", key, 0); };
    const bool builtIn = DriverKindFrom(number("ISD"), number("VISD"), number("TOUCH")) == kDriverKindISD;
    std::vector<PageKeys> pages;
    for (int page = EPageUnConfirm; page <= EPageDone; ++page) {
        const bool ofBuiltIn = page == EPageNoISDHardware || page == EPagePreSplit || page == EPagePreSplitReboot;
        if (builtIn || !ofBuiltIn) {
            pages.push_back(KeysOf(static_cast<EPage>(page)));
        }
    }
    return pages;
}

class CPageCheck {
public:
    CPageCheck(CheckContext &context, PackageLanguage &language) : mContext(context), mLanguage(language)
    {
        const auto number = [&](const char *key, uint32_t otherwise) {
            return context.mModel.WordNumber(language, key, otherwise);
        };
        mMetrics.mTextHeight = BoundedTextHeight(number("TextHeight", static_cast<uint32_t>(mMetrics.mTextHeight)));
        mMetrics.mButtonWidth =
            static_cast<int32_t>(number("ButtonWidth", static_cast<uint32_t>(mMetrics.mButtonWidth)));
        mMetrics.mButtonHeight =
            static_cast<int32_t>(number("ButtonHeight", static_cast<uint32_t>(mMetrics.mButtonHeight)));
        mMetrics.mTextMargin = BoundedTextMargin(number("TextMargin", mMetrics.mTextMargin));
    }

    void CheckMissing(const std::vector<PageKeys> &pages)
    {
        std::vector<std::string> keys(std::begin(kLicenseWords), std::end(kLicenseWords));
        keys.insert(keys.end(), std::begin(kProgressWords), std::end(kProgressWords));
        for (const PageKeys &page : pages) {
            keys.insert(keys.end(), {page.mTitle, page.mText, page.mLeft, page.mRight});
        }
        std::vector<std::string> missing;
        for (const std::string &key : keys) {
            const bool known = std::find(missing.begin(), missing.end(), key) != missing.end();
            if (!key.empty() && !known && !mContext.mModel.Word(mLanguage, key)) {
                missing.push_back(key);
            }
        }
        if (!missing.empty()) {
            const size_t more = missing.size() > kMostListed ? missing.size() - kMostListed : 0;
            missing.resize(missing.size() - more);
            mContext.mFound.Add(ECheckMissingPageWord, mContext.mModel.PlaceOfLanguage(mLanguage),
                                "[" + mLanguage.mName + "] lacks words of the window: " + Listed(missing) +
                                    (more != 0 ? " and " + std::to_string(more) + " more" : ""));
        }
    }

    void CheckPage(const PageKeys &page)
    {
        PageMetrics metrics = mMetrics;
        metrics.mButtonWidth = kPageButtonWidth;
        const PageLayout layout = LayOutPage(metrics, page.HasLeft(), page.HasRight());
        CheckTitle(page.mTitle);
        CheckText(page.mText, layout.mText);
        CheckButton(page.mLeft, layout.mLeft);
        CheckButton(page.mRight, layout.mRight);
    }

    void CheckLicense()
    {
        const LicenseLayout layout = LayOutLicense(mMetrics);
        CheckTitle("LicenseTitle");
        CheckText("LicenseText1", layout.mUpperText);
        CheckText("LicenseText2", layout.mLowerText);
        CheckButton("AcceptText", layout.mAccept);
        CheckButton("DeclineText", layout.mDecline);
        CheckTitle("ProgressTitle");
        CheckText("InstallProgress", kProgressTextPlace);
        CheckAgreement();
        const std::string font = mContext.mModel.Word(mLanguage, "FontFaceName").value_or(std::string());
        if (font.size() > kLongestFontName) {
            mContext.mFound.Add(ECheckValueTooLong, PlaceOf("FontFaceName"),
                                "the name of a font has at most 31 characters");
        }
    }

private:
    std::u16string Words(const std::string &key)
    {
        const std::optional<std::string> word = key.empty() ? std::nullopt : mContext.mModel.Word(mLanguage, key);
        return word ? CPackageModel::WideWord(mLanguage, *word) : std::u16string();
    }

    ScriptPlace PlaceOf(const std::string &key) { return mContext.mModel.PlaceOfWord(mLanguage, key); }

    void Tell(const std::string &key, int32_t needed, int32_t room, const char *what)
    {
        mContext.mFound.Add(ECheckTextDoesNotFit, PlaceOf(key),
                            key + " takes about " + std::to_string(needed) + " pixels of " + what + ", and has " +
                                std::to_string(std::max(room, 0)));
    }

    // A title is cut where the window ends, behind its icon and in front of the box that closes it.
    void CheckTitle(const std::string &key)
    {
        constexpr int32_t kRoom = 480 - 70;
        constexpr int32_t kCaptionPoints = 9;
        const int32_t width = LineWidth(Words(key), kCaptionPoints);
        if (width > kRoom) {
            Tell(key, width, kRoom, "width");
        }
    }

    void CheckText(const std::string &key, const ControlPlace &place)
    {
        const std::u16string text = Words(key);
        const int32_t height = ::TextHeight(text, place.mWidth, mMetrics.mTextHeight);
        if (!text.empty() && height > place.mHeight) {
            Tell(key, height, place.mHeight, "height");
        }
    }

    void CheckButton(const std::string &key, const ControlPlace &place)
    {
        const int32_t width = LineWidth(Words(key), mMetrics.mTextHeight);
        if (width > place.mWidth - kButtonEdge) {
            Tell(key, width, place.mWidth - kButtonEdge, "width");
        }
    }

    void CheckAgreement()
    {
        const std::optional<std::string> word = mContext.mModel.Word(mLanguage, "LicenseFile");
        if (!word || word->empty()) {
            return;
        }
        CPackMacros macros(mContext.mModel, mLanguage);
        const std::string path = ExpandMacros(*word, macros);
        const bool escaped = std::any_of(path.begin(), path.end(), [](char c) { return c >= 0 && c < ' '; });
        const PackageEntry *const entry = mContext.mModel.Tree().Find(path);
        if (path.front() == kFolderMark || escaped) {
            return;
        }
        if (entry == nullptr) {
            mContext.mFound.Add(ECheckMissingSource, PlaceOf("LicenseFile"),
                                path + " is not in the package: the agreement is empty");
        } else if (!mContext.mModel.Tree().IsWrittenSo(path, *entry)) {
            mContext.mFound.Add(ECheckOtherCase, PlaceOf("LicenseFile"),
                                "the package has this file as " + entry->mPath);
        }
    }

    CheckContext &mContext;
    PackageLanguage &mLanguage;
    PageMetrics mMetrics;
};

} // namespace

void CheckPages(CheckContext &context)
{
    const std::vector<PageKeys> pages = PagesOf(context.mModel);
    for (PackageLanguage &language : context.mModel.Languages()) {
        if (!language.mHasSection) {
            continue;
        }
        CPageCheck check(context, language);
        check.CheckMissing(pages);
        check.CheckLicense();
        for (const PageKeys &page : pages) {
            check.CheckPage(page);
        }
    }
}
