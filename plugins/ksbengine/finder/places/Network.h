#pragma once

#include <QString>

#include <opencv2/core.hpp>

#include <memory>

namespace finder {

/// A small learnt network that is part of the program: see training/README.md for how it is made. It is read from its
/// resource when it is first run. One instance per thread.
class Network
{
public:
    /// `name` is that of a file in the folder of the learnt files, without its ending.
    explicit Network(const QString& name);
    ~Network();
    Network(const Network&) = delete;
    Network& operator=(const Network&) = delete;

    /// From a 4-dimensional blob of floats to the network's answer; valid until the next run. Throws cv::Exception
    /// where the file is damaged or the blob's shape does not fit.
    cv::Mat run(const cv::Mat& blob);

private:
    struct Net;
    QString m_name;
    std::unique_ptr<Net> m_net;
};

} // namespace finder
