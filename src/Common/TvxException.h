// The exception of the service and device workers. It is raised and caught inside them and never leaves a step; what it
// means is its text.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>

class CTvxException : public std::exception {
public:
    // `file` may be null and must outlive the exception; `status` 0 stands for none. Raisers inside the workers give
    // null, 0 and -1, which is kept as 0xffff.
    CTvxException(const char *file, uint32_t line, const std::string &message, uint16_t status);

    // Copying moves the detail on to the copy.
    CTvxException(const CTvxException &other);
    CTvxException &operator=(const CTvxException &) = delete;
    ~CTvxException() override;

    // "File: <file>, Line: <line>, Status: <hex>,  "<message>"", the parts that are set.
    const char *what() const noexcept override { return mText.c_str(); }

    const char *File() const { return mFile; }
    uint32_t Line() const { return mLine; }
    const std::string &Message() const { return mMessage; }
    uint16_t Status() const { return mStatus; }

private:
    const char *mFile;
    uint32_t mLine;
    std::string mMessage;
    uint16_t mStatus;
    std::string mText;
    mutable std::unique_ptr<std::string> mDetail; // null unless somebody between raiser and catcher adds one
};
