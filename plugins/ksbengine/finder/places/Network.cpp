#include "Network.h"

#include <QFile>

#include <opencv2/dnn.hpp>

// A static library's resources are only there once they are asked for; the macro wants to stand outside of namespaces.
static void addLearntFiles()
{
    Q_INIT_RESOURCE(learnt);
}

namespace finder {

struct Network::Net
{
    cv::dnn::Net net;
};

Network::Network(const QString& name)
    : m_name(name)
{
}

Network::~Network() = default;

cv::Mat Network::run(const cv::Mat& blob)
{
    if (!m_net) {
        addLearntFiles();
        QFile file(QStringLiteral(":/finder/%1.onnx").arg(m_name));
        if (!file.open(QIODevice::ReadOnly))
            CV_Error(cv::Error::StsObjectNotFound, "no learnt file " + m_name.toStdString());
        const QByteArray bytes = file.readAll();
        auto made = std::make_unique<Net>();
        made->net = cv::dnn::readNetFromONNX(bytes.constData(), static_cast<size_t>(bytes.size()));
        made->net.setPreferableBackend(cv::dnn::DNN_BACKEND_OPENCV);
        m_net = std::move(made);
    }
    m_net->net.setInput(blob);
    return m_net->net.forward();
}

} // namespace finder
