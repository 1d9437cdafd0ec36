#include "platform/NamedMutex.h"

#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <semaphore.h>

namespace {

// One semaphore per user, as a named mutex is per session: another user's board neither waits on it nor
// is refused it (a semaphore made by one user is not writable for the others).
std::string SemName(const std::string& name) {
    return (!name.empty() && name[0] == '/' ? name : "/" + name) + "." + std::to_string(::getuid());
}

sem_t* Sem(void* p) {
    return static_cast<sem_t*>(p);
}

} // namespace

std::unique_ptr<TNamedMutex> TNamedMutex::Create(const std::string& name, bool initiallyOwned,
                                                 int32_t& error) {
    const std::string semName = SemName(name);
    // Try to create it taken (value 0) or free (1); if it exists, open it as it is.
    bool created = true;
    sem_t* sem = ::sem_open(semName.c_str(), O_CREAT | O_EXCL, 0666, initiallyOwned ? 0u : 1u);
    if (sem == SEM_FAILED && errno == EEXIST) {
        created = false;
        sem = ::sem_open(semName.c_str(), 0);
    }
    if (sem == SEM_FAILED) {
        error = errno;
        return nullptr;
    }
    error = 0;
    return std::unique_ptr<TNamedMutex>(new TNamedMutex(sem, initiallyOwned && created));
}

TNamedMutex::~TNamedMutex() {
    Release();
    ::sem_close(Sem(FSem));
}

bool TNamedMutex::Release() {
    if (!FOwned) return false;
    FOwned = false;
    return ::sem_post(Sem(FSem)) == 0;
}

bool TNamedMutex::Acquire(int timeoutMs) {
    if (FOwned) return true;
    timespec until{};
    ::clock_gettime(CLOCK_REALTIME, &until);
    until.tv_sec += timeoutMs / 1000;
    until.tv_nsec += static_cast<long>(timeoutMs % 1000) * 1000000L;
    if (until.tv_nsec >= 1000000000L) {
        until.tv_sec += 1;
        until.tv_nsec -= 1000000000L;
    }
    int rc;
    while ((rc = ::sem_timedwait(Sem(FSem), &until)) != 0 && errno == EINTR) {
    }
    FOwned = rc == 0;
    return FOwned;
}

void RemoveNamedMutex(const std::string& name) {
    ::sem_unlink(SemName(name).c_str());
}
