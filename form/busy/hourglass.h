#pragma once

namespace velcoran::form {

/// The hourglass as the application's pointer. Set and reset any number of times; never left behind.
class Hourglass {
public:
    Hourglass() = default;
    ~Hourglass() { reset(); }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;

    void set();
    void reset();
    [[nodiscard]] bool isSet() const { return m_isSet; }

private:
    bool m_isSet = false;
};

}  // namespace velcoran::form
