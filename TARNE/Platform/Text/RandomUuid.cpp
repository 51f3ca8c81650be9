#include "RandomUuid.h"

#include <QRandomGenerator>

#include <array>

namespace tarne {

QUuid randomUuid() {
    thread_local QRandomGenerator generator = QRandomGenerator::securelySeeded();
    std::array<quint32, 4> r{};
    for (quint32 &word : r)
        word = generator.generate();
    const auto byte = [](quint32 word, int index) {
        return static_cast<uchar>(word >> (8 * index));
    };
    const auto version4 = static_cast<ushort>((r[1] & 0x0FFF) | 0x4000);
    const auto variant = static_cast<uchar>((byte(r[2], 0) & 0x3F) | 0x80);
    return QUuid(r[0], static_cast<ushort>(r[1] >> 16), version4, variant, byte(r[2], 1),
                 byte(r[2], 2), byte(r[2], 3), byte(r[3], 0), byte(r[3], 1), byte(r[3], 2),
                 byte(r[3], 3));
}

} // namespace tarne
