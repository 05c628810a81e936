// A copy that is whole before it bears the name that it is made for.
#pragma once

#include <string>

// The content is copied to a name of this program's own in the folder of the target, and takes the target's name by a
// rename, so that whenever the process stops there is either what stood at the target before or the whole copy. What
// a stopped process leaves under that name goes with the next copy into the folder. The copy is made when it is first
// asked for; one that has found no name is taken away with the object.
class CWholeCopy {
public:
    // Copies `source` beside `target`, both paths in the ANSI code page.
    CWholeCopy(const std::string &source, const std::string &target);
    ~CWholeCopy() { Drop(); }
    CWholeCopy(const CWholeCopy &) = delete;
    CWholeCopy &operator=(const CWholeCopy &) = delete;

    // Whether there is a copy beside the target.
    bool Stands() { return Make(); }

    // Gives that copy a name that is free. Answers whether it has it now.
    bool TakeName(const std::string &name) { return Make() && Rename(name, false); }

    // Gives it the name of a file that nobody holds, which goes with that.
    bool Replace(const std::string &name) { return Make() && Rename(name, true); }

    // For a disk without room for two, and wherever else no copy can stand beside the target: makes the copy under the
    // name itself, which has to be free. One that fails leaves nothing there; the last error tells why.
    bool Write(const std::string &name);

    // Either of the two.
    bool PutInto(const std::string &name) { return TakeName(name) || Write(name); }

private:
    bool Make();
    bool Rename(const std::string &name, bool replace);
    void Drop();

    std::string mSource;
    std::string mTarget;
    std::string mBeside; // where the copy stands; empty when there is none
    bool mTried = false;
};
