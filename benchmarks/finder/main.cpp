#include <opencv2/core/utility.hpp>

#include <benchmark/benchmark.h>

int main(int argc, char** argv)
{
    cv::setNumThreads(1); // one station has one thread
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
