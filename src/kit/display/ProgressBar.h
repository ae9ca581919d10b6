#pragma once

#include "kit/common/Pace.h"

#include <QtWidgets/QProgressBar>

#include <cstdint>

namespace discaro::kit {

// A bar for a value between min and max. It takes every value at once and paints some thirty times
// a second at most.
class ProgressBar : public QProgressBar {
    Q_OBJECT
public:
    explicit ProgressBar(QWidget* parent = nullptr);

    int64_t min() const { return m_min; }
    int64_t max() const { return m_max; }
    int64_t value() const { return m_value; }

    // A value outside the new range is moved to its nearer end. All three throw base::RuntimeError
    // InvalidValue and change nothing when max would lie below min, or the value outside the range.
    void setMin(int64_t min);
    void setMax(int64_t max);
    void setValue(int64_t value);

    // The whole percentage of value by max, rounded down. Throws InvalidValue while max is 0.
    int64_t percent() const;

    // Paints what it has now, for work that lets no event run.
    void paintNow();

private:
    void changeRange(int64_t min, int64_t max);
    void draw();

    int64_t m_min = 0;
    int64_t m_max = 100;
    int64_t m_value = 0;
    Pace m_pace;
};

} // namespace discaro::kit
