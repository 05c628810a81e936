// The decisions in front of a run that need no question to Windows.
#include "Installer/PreflightRules.h"

#include <gtest/gtest.h>

#include "Common/CSystemState.h"

namespace {

TEST(PreflightRules, OfTheDriverKindsTheLastOneThatIsSetCounts)
{
    const struct {
        uint32_t isd, visd, touch, kind;
    } rows[] = {{0, 0, 0, 0}, {1, 0, 0, 1}, {0, 1, 0, 3}, {0, 0, 1, 2}, {1, 1, 0, 3},
                {1, 0, 1, 2}, {0, 1, 1, 2}, {1, 1, 1, 2}, {7, 0, 0, 1}, {0, 0, 0x80000000, 2}};
    for (const auto &row : rows) {
        EXPECT_EQ(DriverKindFrom(row.isd, row.visd, row.touch), row.kind)
            << row.isd << " " << row.visd << " " << row.touch;
    }
}

TEST(PreflightRules, TellsThePlatformsApart)
{
    const struct {
        int32_t type;
        bool supported, vistaOrLater;
    } rows[] = {{20, true, false},  {21, true, false},  {30, true, true},   {40, true, true},     {50, true, true},
                {51, true, true},   {60, true, true},   {61, true, true},   {-1, false, false},   {0, false, false},
                {22, false, false}, {41, false, false}, {62, false, false}, {1000, false, false}, {2000, false, false}};
    for (const auto &row : rows) {
        EXPECT_EQ(IsSupportedPlatform(row.type), row.supported) << row.type;
        EXPECT_EQ(IsVistaOrLaterPlatform(row.type), row.vistaOrLater) << row.type;
    }
}

TEST(PreflightRules, PlatformComesBeforeHardware)
{
    const struct {
        const char *name;
        PreflightFacts facts; // OS type, obsolete allowed, kind, override, devices, uninstall
        EInstallType type;
    } rows[] = {
        {"plain package", {40, 0, 0, 0, 0, false}, EInstallAllowed},
        {"unknown Windows", {-1, 0, 0, 0, 0, false}, ENotSupported},
        {"unknown Windows, removal", {-1, 0, 0, 0, 0, true}, ENotSupported},
        {"unknown Windows allowed", {-1, 1, 0, 0, 0, false}, EInstallAllowed},
        {"known Windows, allowed needlessly", {20, 1, 0, 0, 0, false}, EInstallAllowed},
        {"no hardware", {61, 0, 1, 0, 0, false}, ENoISDHardware},
        {"no hardware on an unknown Windows", {-1, 0, 1, 0, 0, false}, ENotSupported},
        {"no hardware on an unknown Windows allowed", {-1, 1, 1, 0, 0, false}, ENoISDHardware},
        {"no hardware, removal", {61, 0, 1, 0, 0, true}, EInstallAllowed},
        {"hardware there", {61, 0, 1, 0, 1, false}, EInstallAllowed},
        {"hardware not asked for", {61, 0, 1, 1, 0, false}, EInstallAllowed},
        {"hardware not asked for by any number", {61, 0, 1, -2, 0, false}, EInstallAllowed},
        {"virtual kind needs none", {61, 0, 3, 0, 0, false}, EInstallAllowed},
        {"touch kind needs none", {61, 0, 2, 0, 0, false}, EInstallAllowed},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(DecideBeforeRights(row.facts), row.type) << row.name;
    }
}

} // namespace
