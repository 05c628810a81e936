// What the steps of a package bring, take and test: files, folders, values, links, services, drivers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Pack/CheckContext.h"

enum class EThing : uint8_t {
    EFile,
    EFolder,
    EValue,    // mPlace is the key
    EKeyTree,  // a key with all below it; taken only
    EContents, // what is in a folder; taken only
    ELink,
    ELinkOfFile, // its name comes from a data file; mPlace is the folder, mName the entry
    EShellEntry,
    EService,
    EDriver, // mName tells of which kind
};

enum class EDeed : uint8_t { EBrings, ETakes, ETests };

struct InventoryItem {
    EThing mThing;
    EDeed mDeed;
    std::string mPlace; // see PlacePath() and RegistryPlace
    std::string mName;  // of a value in capitals, an entry, a kind of driver
    std::string mWords; // what a person calls it
    EView mView;        // none where 64-bit Windows has but one view of the place
    RunSet mRuns;
    bool mReached;
    ScriptPlace mAt;
    const ScriptStep *mStep;

    // As a person reads it.
    std::string Shown() const;
};

class CInventory {
public:
    explicit CInventory(CheckContext &context);

    const std::vector<InventoryItem> &Items() const { return mItems; }

private:
    void Take(const CheckedStep &checked);
    void TakeFiles(const CheckedStep &checked);
    void TakeRegistry(const CheckedStep &checked);
    void TakeDrivers(const CheckedStep &checked);
    void Add(const CheckedStep &checked, EThing thing, EDeed deed, std::string place, std::string name,
             std::string words, size_t field, bool twoViews);
    std::string PlaceOf(const CheckedStep &checked, size_t number) const;

    CheckContext &mContext;
    std::vector<InventoryItem> mItems;
};

// Whether 64-bit Windows shows a file to 64-bit and 32-bit programs in two places.
bool HasTwoViews(const std::string &place);
