// What a lock guards, in words that clang checks: a member or function that needs the lock says so, and touching it
// without the lock stops a build by clang. Other compilers read past them.
#pragma once

#ifdef __clang__
#define SDM_LOCK_WORD(...) __attribute__((__VA_ARGS__))
#else
#define SDM_LOCK_WORD(...)
#endif

/// A class whose objects can be held.
#define SDM_LOCKABLE(name) SDM_LOCK_WORD(capability(name))

/// A class whose objects hold another object for as long as they live.
#define SDM_SCOPED_HOLD SDM_LOCK_WORD(scoped_lockable)

/// A member, and what a member points to.
#define SDM_GUARDED_BY(lock) SDM_LOCK_WORD(guarded_by(lock))
#define SDM_POINTEE_GUARDED_BY(lock) SDM_LOCK_WORD(pt_guarded_by(lock))

/// The caller holds the lock.
#define SDM_NEEDS(lock) SDM_LOCK_WORD(requires_capability(lock))

/// Takes the lock, or gives it back.
#define SDM_TAKES(lock) SDM_LOCK_WORD(acquire_capability(lock))
#define SDM_GIVES_BACK() SDM_LOCK_WORD(release_capability())

/// Called where the lock is held although the compiler cannot see it.
#define SDM_SAYS_HELD(lock) SDM_LOCK_WORD(assert_capability(lock))

/// Does without the lock and is meant to; the reason stands beside it.
#define SDM_UNLOCKED_ON_PURPOSE SDM_LOCK_WORD(no_thread_safety_analysis)
