// The one exception base of the board. Every error class of the engine derives from it and carries only
// a message; callers that log an error write Message() (the "Routine : Exception occurred : " + message
// pattern), and tools that show one write ClassName() + ": " + Message().
#pragma once

#include <exception>
#include <string>

class Exception : public std::exception {
public:
    explicit Exception(std::string message) : FMessage(std::move(message)) {}
    const std::string& Message() const noexcept { return FMessage; }
    const char* what() const noexcept override { return FMessage.c_str(); }
    // The class name as the board's own error classes spell it ("EXMLReadError", "EFilterError", ...).
    virtual const char* ClassName() const noexcept { return "Exception"; }

private:
    std::string FMessage;
};

// A text that is not a number or a date, or a date that does not exist.
class EConvertError : public Exception {
public:
    using Exception::Exception;
    const char* ClassName() const noexcept override { return "EConvertError"; }
};

// A file that cannot be opened, read or written.
class EInOutError : public Exception {
public:
    using Exception::Exception;
    const char* ClassName() const noexcept override { return "EInOutError"; }
};

// An index outside a list ("List index out of bounds (7)").
class EListError : public Exception {
public:
    using Exception::Exception;
    const char* ClassName() const noexcept override { return "EListError"; }
    static EListError OutOfBounds(long long index) {
        return EListError("List index out of bounds (" + std::to_string(index) + ")");
    }
};

// A broken internal expectation, raised instead of going on with inconsistent state.
class EAssertionFailed : public Exception {
public:
    using Exception::Exception;
    const char* ClassName() const noexcept override { return "EAssertionFailed"; }
};
