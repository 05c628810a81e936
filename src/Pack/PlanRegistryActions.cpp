// What the steps that write to the registry would do.
#include <cstring>

#include "Common/Numbers.h"
#include "Common/StringUtilities.h"
#include "Pack/PlanRun.h"
#include "Registry/MultiString.h"

namespace {

std::string NumberBytes(int32_t number)
{
    std::string data(sizeof number, '\0');
    std::memcpy(data.data(), &number, sizeof number);
    return data;
}

} // namespace

// As the product's access to the registry has it: empty data deletes. `data` is nothing when it is not known.
EAnswer CPlanRun::WriteValue(const RegLocation &location, EPlanView view, const std::string &name,
                             const std::optional<std::string> &data, bool number, std::string &note_O)
{
    if (location.mPath.empty()) {
        note_O = "a root alone is refused";
        return EAnswer::ENo;
    }
    CRegistryFacts &registry = mState.mRegistry;
    const std::string key = mContext.mMachine.KeyPath(location, view);
    const std::string value = name == "@" ? std::string() : ToLowerCopy(name);
    for (auto answer = mState.mAnswers.begin(); answer != mState.mAnswers.end();) {
        const bool about = answer->first.compare(0, 8 + key.size(), "number\n" + key + "\n") == 0;
        answer = about ? mState.mAnswers.erase(answer) : std::next(answer);
    }
    const bool empty = data && (data->empty() || data->front() == '\0');
    if (empty && value.empty()) {
        const EAnswer there = registry.KeyExists(key);
        note_O = there == EAnswer::ENo ? "the key is not there" : "deletes the key with all below it";
        if (there != EAnswer::ENo && location.mPath.find_first_not_of('\\') != std::string::npos) {
            registry.RemoveKey(key);
        }
        return there;
    }
    if (empty && !number) {
        const EAnswer there = registry.Find(key, value).mThere;
        note_O = there == EAnswer::ENo ? "the value is not there" : "deletes the value";
        if (there != EAnswer::ENo) {
            registry.RemoveValue(key, value);
        }
        return there;
    }
    registry.PutValue(key, value, data);
    return EAnswer::EYes;
}

EAnswer CPlanRun::ActOnRegistry(const CommandInfo &info, const std::vector<std::string> &fields, std::string &note_O)
{
    const std::string command = info.mName;
    const EPlanView view = PlanViewOf(info);
    if (info.mFields[0].mKind == EFieldData) {
        const std::string file = mContext.mMachine.FilePath(fields[0], EPlanView::EProcess);
        const EAnswer there = file.empty() ? EAnswer::ENo : mState.mFiles.Exists(file);
        if (there == EAnswer::ENo) {
            note_O = "the file is not there";
            return EAnswer::ENo;
        }
        std::optional<std::string> value;
        if (IsOfPackage(file)) {
            const CScriptScope script(Script(), fields[0]);
            value = Script().ReadString(command == "LinkValueFromFile" ? "LINK" : "REGISTRY", fields[1], "", true);
        }
        if (value && value->empty()) {
            note_O = "the file has no such entry";
            return EAnswer::ENo;
        }
        const RegLocation location = Location(fields[2]);
        if (!value) {
            note_O = "if the file has the entry";
            const std::string key = mContext.mMachine.KeyPath(location, view);
            if (mState.mRegistry.KeyExists(key) != EAnswer::EYes) {
                mState.mRegistry.ForgetKey(key);
            }
            mState.mRegistry.ForgetValue(key, ToLowerCopy(fields[1]));
            return EAnswer::EOpen;
        }
        return WriteValue(location, view, fields[1], *value + '\0', false, note_O);
    }
    const RegLocation location = Location(fields[0]);
    const std::string &name = fields[1];
    const std::string &text = fields[2];
    if (command.compare(0, 13, "RegValueDWORD") == 0) {
        return text.empty() ? WriteValue(location, view, name, std::string(1, '\0'), false, note_O)
                            : WriteValue(location, view, name, NumberBytes(DecimalNumber(text)), true, note_O);
    }
    if (info.mEffect == EWritesValue) {
        return WriteValue(location, view, name, text + '\0', false, note_O);
    }
    // A list: as it is, with the entry or without.
    if (location.mPath.empty()) {
        note_O = "a root alone is refused";
        return EAnswer::ENo;
    }
    const std::string key = mContext.mMachine.KeyPath(location, view);
    const ValueFact fact = mState.mRegistry.Find(key, name == "@" ? std::string() : ToLowerCopy(name));
    std::optional<std::string> list = fact.mThere == EAnswer::ENo ? std::string() : fact.mData;
    if (!list) {
        const bool adds = info.mEffect == EAddsEntry;
        note_O = adds ? "unless it is there already" : "if it is there";
        if (adds) {
            mState.mRegistry.PutValue(key, name == "@" ? std::string() : ToLowerCopy(name), std::nullopt);
        } else {
            mState.mRegistry.ForgetValue(key, name == "@" ? std::string() : ToLowerCopy(name));
        }
        return EAnswer::EOpen;
    }
    if (info.mEffect == EAddsEntry) {
        if (!AppendEntry(*list, text)) {
            note_O = "is there already";
            return EAnswer::ENo;
        }
        return WriteValue(location, view, name, list, false, note_O);
    }
    if (fact.mThere == EAnswer::ENo || !RemoveEntry(*list, text)) {
        note_O = "is not there";
        return EAnswer::ENo;
    }
    return WriteValue(location, view, name, list, false, note_O);
}
