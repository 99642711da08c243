#include "nk/nk_exception.h"

namespace NK {

CException::CException(const wchar_t* message, std::int32_t code) noexcept : code_(code) {
    int length = 0;
    for (; message != nullptr && message[length] != L'\0' && length < kMessageSize - 1; ++length) {
        const wchar_t character = message[length];
        message_[length] = character;
        narrowMessage_[length] = character >= 0 && character <= 0xFF ? static_cast<char>(character) : '?';
    }
    message_[length] = L'\0';
    narrowMessage_[length] = '\0';
}

CException::CException(const char* message, std::int32_t code) noexcept : code_(code) {
    int length = 0;
    for (; message != nullptr && message[length] != '\0' && length < kMessageSize - 1; ++length) {
        narrowMessage_[length] = message[length];
        message_[length] = static_cast<wchar_t>(static_cast<unsigned char>(message[length]));
    }
    message_[length] = L'\0';
    narrowMessage_[length] = '\0';
}

const wchar_t* CArrayIndexException::MessageOf(std::int32_t kind) noexcept {
    switch (kind) {
        case kPush:
            return L"Can't push an element into array.";
        case kPop:
            return L"Can't push an element from an empty array.";
        case kFirst:
            return L"Can't get first element from an empty array.";
        case kLast:
            return L"Can't get last element from an empty array.";
        default:
            return L"Array index is out of range.";
    }
}

}  // namespace NK
