#include "audio/ReplayStream.h"

namespace ostrel {

ReplayStream::ReplayStream(ReplayDecoder& decoder, QObject* parent)
    : QIODevice(parent), decoder_(decoder)
{
}

qint64 ReplayStream::readData(char* data, qint64 maxSize)
{
    const auto wanted = static_cast<std::size_t>(maxSize) / sizeof(float);
    if (wanted == 0) return 0;
    // The sink hands a byte buffer; floats go straight into it.
    const std::size_t frames = decoder_.read(reinterpret_cast<float*>(data), wanted);
    if (frames < wanted) hasEnded_ = true;
    return static_cast<qint64>(frames * sizeof(float));
}

} // namespace ostrel
