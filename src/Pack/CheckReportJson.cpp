#include <nlohmann/json.hpp>

#include "Pack/CheckReport.h"
#include "Pack/CodePage.h"

namespace {

using Json = nlohmann::ordered_json;

// Names of files may be of any bytes; what is no text is replaced.
void Write(const Json &json, std::ostream &out_O)
{
    out_O << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

Json PlaceOf(const CheckedPackage &package, const ScriptPlace &place)
{
    return {{"file", FilePath(package, place)},
            {"line", place.mLine},
            {"column", place.mColumn},
            {"length", place.mLength}};
}

// A path as the reference that the format wants: no blanks, no letters beyond ASCII.
std::string Reference(const std::string &path)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string reference;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                           (byte >= '0' && byte <= '9') || std::string_view("/._-~").find(c) != std::string_view::npos;
        if (plain) {
            reference += c;
        } else {
            reference += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
        }
    }
    return reference;
}

Json SarifPlace(const CheckedPackage &package, const ScriptPlace &place)
{
    return {{"physicalLocation",
             {{"artifactLocation", {{"uri", Reference(FilePath(package, place))}}},
              {"region",
               {{"startLine", place.mLine},
                {"startColumn", place.mColumn},
                {"endColumn", place.mColumn + place.mLength}}}}}};
}

Json SarifRules()
{
    Json rules = Json::array();
    for (int check = 0; check < ECheckCount; ++check) {
        const CheckInfo &info = InfoOf(static_cast<ECheck>(check));
        rules.push_back({{"id", info.mName},
                         {"shortDescription", {{"text", info.mSummary}}},
                         {"defaultConfiguration", {{"level", SeverityWord(info.mSeverity)}}}});
    }
    return rules;
}

} // namespace

void WriteCheckJson(const std::vector<CheckedPackage> &packages, std::ostream &out_O)
{
    Json all = Json::array();
    for (const CheckedPackage &package : packages) {
        Json findings = Json::array();
        for (const Diagnostic &found : package.mCheck.Found()) {
            const CheckInfo &info = InfoOf(found.mCheck);
            Json finding = PlaceOf(package, found.mPlace);
            finding["severity"] = SeverityWord(info.mSeverity);
            finding["check"] = info.mName;
            finding["text"] = gCodePage.ToUtf8(found.mText);
            Json others = Json::array();
            for (const ScriptPlace &other : found.mSeeAlso) {
                others.push_back(PlaceOf(package, other));
            }
            finding["seeAlso"] = others;
            findings.push_back(finding);
        }
        all.push_back({{"folder", package.mFolder},
                       {"steps", package.mCheck.CountSteps()},
                       {"errors", package.mCheck.Count(EError)},
                       {"warnings", package.mCheck.Count(EWarning)},
                       {"findings", findings}});
    }
    Write({{"packages", all}}, out_O);
}

void WriteCheckSarif(const std::vector<CheckedPackage> &packages, std::ostream &out_O)
{
    Json results = Json::array();
    for (const CheckedPackage &package : packages) {
        for (const Diagnostic &found : package.mCheck.Found()) {
            const CheckInfo &info = InfoOf(found.mCheck);
            Json result = {{"ruleId", info.mName},
                           {"ruleIndex", static_cast<int>(found.mCheck)},
                           {"level", SeverityWord(info.mSeverity)},
                           {"message", {{"text", gCodePage.ToUtf8(found.mText)}}},
                           {"locations", Json::array({SarifPlace(package, found.mPlace)})}};
            Json others = Json::array();
            for (const ScriptPlace &other : found.mSeeAlso) {
                others.push_back(SarifPlace(package, other));
            }
            if (!others.empty()) {
                result["relatedLocations"] = others;
            }
            results.push_back(result);
        }
    }
    const Json driver = {{"name", "tavixpack"}, {"rules", SarifRules()}};
    const Json run = {{"tool", {{"driver", driver}}}, {"columnKind", "utf16CodeUnits"}, {"results", results}};
    Write({{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
           {"version", "2.1.0"},
           {"runs", Json::array({run})}},
          out_O);
}
