// Everything a test of the whole program needs: a package staged in a folder of its own, the run of the
// installer on it with its trace as records, and the machine before and after.
//
//     TEST(Example, CopiesAFile)
//     {
//         Package package;
//         package.File("a.txt", "hello").Steps("CopyFile;a.txt;b.txt");
//         const RunResult run = package.Run();
//         EXPECT_EQ(run.mExitCode, 0u);
//         EXPECT_TRUE(HasInOrder(run, {"Instruction CopyFile", ", Copied Yes *"}));
//         EXPECT_EQ(ReadText(package.Path("b.txt")), "hello");
//     }
//
// The environment names what is tested: TAVIX_SETUP (path of TavixSetup.exe), TAVIX_DOUBLES (folder of the
// stand-ins), TAVIX_DOCS (folder of the manual), TAVIX_PACKAGES (folder of the sample packages).
//
// A suite whose name contains Win32Prefix needs a 32-bit Windows; all others run on a 64-bit one. Tests leave
// the machine as they found it: everything they change outside their package has an owner that restores it.
#pragma once

#include <gtest/gtest.h>

#include "Files.h"
#include "Machine.h"
#include "Package.h"
#include "Registry.h"
#include "TraceLog.h"
