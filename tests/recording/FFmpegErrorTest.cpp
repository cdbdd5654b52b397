#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "audio/FFmpegError.h"

using namespace ostrel;

TEST(FFmpegError, ASystemErrorReadsAsTheSystemSaysItInBothForms)
{
    // FFmpeg's codes for system errors are the negated errno values on this platform.
    const std::string expected = std::strerror(ENOENT);
    EXPECT_EQ(ffmpegErrorText(-ENOENT), expected);
    EXPECT_EQ(ffmpegErrorMessage(-ENOENT), QString::fromStdString(expected));
}
