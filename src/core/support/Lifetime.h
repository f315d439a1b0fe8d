// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace tolvane {

// Tells a callback that may run after its owner is gone whether the owner is still there, for an
// owner that is not a QObject or that is asked about from another thread (where QPointer cannot
// be). The owner keeps a Lifetime member; each callback keeps the watch() it was made with.
// A watch may be asked on any thread, but it answers only for the moment it is asked: the owner
// must end on the thread that goes on to call into it.
class Lifetime final
{
public:
    class Watch final
    {
    public:
        explicit operator bool() const { return !m_token.expired(); }

    private:
        friend class Lifetime;
        explicit Watch(std::weak_ptr<const void> token)
            : m_token(std::move(token))
        {}

        std::weak_ptr<const void> m_token;
    };

    Lifetime() = default;
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;

    Watch watch() const { return Watch(m_token); }
    // Ends it before the owner's members go: for an owner that waits for its workers on the way out.
    void end() { m_token.reset(); }

private:
    std::shared_ptr<const void> m_token = std::make_shared<char>(0);
};

} // namespace tolvane
