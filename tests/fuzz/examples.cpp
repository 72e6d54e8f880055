#include "ExampleFile.h"
#include "Harness.h"

FUZZ_TARGET(examples)
{
    QString error;
    const finder::HoleExamples examples = ExampleFile::read(fuzz::homeFile("/x.examples.json", bytes), &error);
    for (const auto* list : {&examples.holes, &examples.rejected}) {
        fuzz::require(list->size() <= finder::HoleExamples::most, "no more examples than a model takes");
        for (const finder::HoleExample& example : *list) {
            const int side = finder::HoleExample::patchSide;
            fuzz::require(example.patch.rows == side && example.patch.cols == side && example.patch.type() == CV_8UC1,
                          "a patch is a gray picture of its size");
            fuzz::require(example.ringShare > 0 && example.holeRadius > 0, "sizes are positive");
        }
    }
}
