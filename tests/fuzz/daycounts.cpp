#include "Harness.h"
#include "workflow/DayCountsFile.h"

FUZZ_TARGET(daycounts)
{
    const DayRecord record = DayCountsFile::read(fuzz::homeFile("/user/dayCounts.json", bytes));
    for (const DayCount& count : record.counts)
        fuzz::require(count.found >= 0 && count.notFound >= 0 && count.refused >= 0, "nothing is counted below 0");
}
