#pragma once

#include <QString>

namespace tarne {

/// The lock by which one program at a time has what two of them would spoil. It ends with the
/// object or the process, however that ends.
class ProgramLock {
public:
    enum class Holder {
        Us,
        Another,       ///< Another program runs.
        AnotherEnding, ///< Another program is about to end.
    };

    virtual ~ProgramLock() = default;

    /// Takes the lock if nobody has it, and returns who has it now. Where the system allows no lock
    /// the program goes on without, as `Us`.
    [[nodiscard]] virtual Holder take() = 0;

    /// For the holder: tells the others that it is about to end.
    virtual void beginEnding() = 0;

    /// For the holder: the address of the bus on which it can be asked for its window; empty when
    /// there is none.
    virtual void setAddress(const QString &busAddress) = 0;
    /// The holder's address.
    [[nodiscard]] virtual QString address() = 0;
};

} // namespace tarne
