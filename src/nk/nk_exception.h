// The framework's exceptions: each carries its message as wide and as 8-bit text. [any]
#pragma once

#include <cstdint>
#include <exception>

namespace NK {

/// Base of every exception that the framework and the layers above it throw. Copyable, allocates nothing.
/// A message longer than 1023 characters is cut. The 8-bit form is Latin-1 with "?" for what it lacks.
class CException : public std::exception {
public:
    static constexpr int kMessageSize = 1024;  ///< characters, the terminator included

    explicit CException(const wchar_t* message, std::int32_t code = 0) noexcept;
    explicit CException(const char* message, std::int32_t code = 0) noexcept;
    CException(const CException&) noexcept = default;
    CException& operator=(const CException&) noexcept = default;
    ~CException() override = default;

    /// The 8-bit message; lives as long as this object.
    const char* what() const noexcept override { return narrowMessage_; }
    /// The wide message; lives as long as this object.
    virtual const wchar_t* GetMessage() const noexcept { return message_; }
    /// The text of the standard base, which knows nothing of the message.
    virtual const char* GetStandardText() const noexcept { return std::exception::what(); }
    /// The number given by the thrower; 0 by default, the kind of failure for index exceptions.
    std::int32_t GetCode() const noexcept { return code_; }

private:
    std::int32_t code_;
    wchar_t message_[kMessageSize];
    char narrowMessage_[kMessageSize];
};

/// "Memory allocation error."
class CMemoryException : public CException {
public:
    CMemoryException() noexcept : CException(L"Memory allocation error.") {}
};

/// "Critical error: buffer overrun."
class CBufferOverrunException : public CException {
public:
    CBufferOverrunException() noexcept : CException(L"Critical error: buffer overrun.") {}
};

/// A mistake of the calling code; "Programming error." unless a text is given.
class CCoderException : public CException {
public:
    explicit CCoderException(const wchar_t* message = L"Programming error.") noexcept : CException(message) {}
};

/// "Index out of range." unless a text is given; the code is the kind of failure.
class CBadIndexException : public CException {
public:
    explicit CBadIndexException(const wchar_t* message = L"Index out of range.", std::int32_t code = 0) noexcept
        : CException(message, code) {}
};

/// An index failure of an array; the code is the kind.
class CArrayIndexException : public CBadIndexException {
public:
    enum Kind : std::int32_t { kPush = 1, kPop = 2, kFirst = 3, kLast = 4, kRange = 5 };

    CArrayIndexException() noexcept = default;
    explicit CArrayIndexException(std::int32_t kind) noexcept : CBadIndexException(MessageOf(kind), kind) {}

private:
    static const wchar_t* MessageOf(std::int32_t kind) noexcept;
};

/// An argument outside its range; "Invalid parameter." unless a text is given.
class CInvalidParameterException : public CException {
public:
    explicit CInvalidParameterException(const wchar_t* message = L"Invalid parameter.") noexcept
        : CException(message) {}
};

}  // namespace NK
