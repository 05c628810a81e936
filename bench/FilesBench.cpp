// What the installer's file commands cost beside the bare platform calls that they cannot do without.
//
// The rounds of both take turns and the least time of each counts, as whatever else the machine does only adds to it.
// The time of the installer is that of its whole process less that of one which runs no step.
#include <string>
#include <vector>

#include "Bench.h"
#include "Files.h"

namespace {

constexpr int kRounds = 3;
constexpr int kLargeRounds = 9; // short ones, in which the start of the process weighs

std::string Name(int number)
{
    return "\\file" + std::to_string(number) + ".bin";
}

class FilesBench {
public:
    FilesBench()
    {
        std::vector<double> starts;
        for (int round = 0; round < 2 * kRounds; ++round) {
            mPackage.Script("[Install]\r\nNULL\r\n");
            starts.push_back(mPackage.Run().mMilliseconds);
        }
        mStart = Least(starts);
        Print("run without work", mStart, "ms");
    }

    void Copies(const std::string &name, int count, size_t size, int rounds)
    {
        MakeSource(count, size);
        mPackage.Script("[Install]\r\nCopyDir;.\\\\source;.\\\\target\r\n");
        for (int round = 0; round < rounds; ++round) {
            mBare.push_back(Milliseconds([&] { CopyBare(count); }));
            RemoveTree(mTarget);
            mInstaller.push_back(mPackage.Run().mMilliseconds - mStart);
            Expect(count);
            RemoveTree(mTarget);
        }
        Report(name);
    }

    void Deletion(const std::string &name, int count, size_t size)
    {
        MakeSource(count, size);
        mPackage.Script("[Install]\r\nDeleteDirContents;.\\\\target\r\n");
        for (int round = 0; round < kRounds; ++round) {
            CopyBare(count);
            mBare.push_back(Milliseconds([&] {
                for (int number = 0; number < count; ++number) {
                    DeleteFileA((mTarget + Name(number)).c_str());
                }
            }));
            Expect(0);
            CopyBare(count);
            mInstaller.push_back(mPackage.Run().mMilliseconds - mStart);
            Expect(0);
        }
        Report(name);
    }

private:
    void MakeSource(int count, size_t size) const
    {
        RemoveTree(mSource);
        const std::string content(size, 'x');
        for (int number = 0; number < count; ++number) {
            if (!WriteText(mSource + Name(number), content)) {
                Fail("making a file");
            }
        }
    }

    void CopyBare(int count) const
    {
        MakeFolders(mTarget);
        for (int number = 0; number < count; ++number) {
            if (!CopyFileA((mSource + Name(number)).c_str(), (mTarget + Name(number)).c_str(), TRUE)) {
                Fail("copying a file");
            }
        }
    }

    void Expect(int count) const
    {
        if (Tree(mTarget).size() != static_cast<size_t>(count)) {
            Fail("the files that are there");
        }
    }

    void Report(const std::string &name)
    {
        Print(name + ", installer", Least(mInstaller), "ms");
        Print(name + ", bare calls", Least(mBare), "ms");
        Print(name + ", ratio", Least(mInstaller) / Least(mBare), "x", 2);
        mInstaller.clear();
        mBare.clear();
    }

    StagedPackage mPackage;
    std::string mSource = mPackage.Path("source");
    std::string mTarget = mPackage.Path("target");
    double mStart = 0;
    std::vector<double> mInstaller;
    std::vector<double> mBare;
};

} // namespace

int main()
{
    FilesBench bench;
    bench.Copies("copying 2000 files of 4 KiB", 2000, 4 * 1024, kRounds);
    bench.Deletion("deleting 2000 files of 4 KiB", 2000, 4 * 1024);
    bench.Copies("copying 8 files of 64 MiB", 8, 64 * 1024 * 1024, kLargeRounds);
    return 0;
}
