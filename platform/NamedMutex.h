// The board's named start-up mutex, shared with adapter libraries and their companion processes.
// On POSIX it is a named semaphore of the calling user (the name gets "." + uid) whose value 1 means free;
// the handle handed to adapters is its sem_t*. A TNamedMutex belongs to one thread at a time (the board's);
// the semaphore itself may be waited on and posted from any thread or process.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

class TNamedMutex {
public:
    // Creates the semaphore, or opens it when it exists already. With initiallyOwned the caller owns it
    // on return if it created it (as with a named mutex, an existing one is opened without taking it).
    // Returns nullptr on failure with error set to the errno value; error is 0 on success.
    // name: "PV_NoticeBoard_Mutex" or "/PV_NoticeBoard_Mutex" (the leading slash is added when missing).
    static std::unique_ptr<TNamedMutex> Create(const std::string& name, bool initiallyOwned, int32_t& error);

    // Closes the handle (not the semaphore, which lives on for other holders). Releases it first if owned.
    ~TNamedMutex();
    TNamedMutex(const TNamedMutex&) = delete;
    TNamedMutex& operator=(const TNamedMutex&) = delete;

    // Gives up ownership. False (and nothing done) when this handle does not own it.
    bool Release();
    // Waits up to timeoutMs for it to be free and takes it; false on timeout or error.
    bool Acquire(int timeoutMs);
    bool Owned() const { return FOwned; }

    // The handle given to adapters (a sem_t*); valid while this object lives.
    void* Handle() const { return FSem; }

private:
    TNamedMutex(void* sem, bool owned) : FSem(sem), FOwned(owned) {}
    void* FSem;
    bool FOwned;
};

// Removes the semaphore's name from the system (tests, and clean-up after a crashed holder).
void RemoveNamedMutex(const std::string& name);
