// The smaller answers kept from the sample file format: the preferences block, the codec text,
// the data-rate table and the header's text fields.
#pragma once

#include <cstdint>

#include "host_sdk/premiere_importer.h"

// imGetPrefs8. A null record is answered 0; a zero length is answered with the record size;
// otherwise the file's path goes into the block, which has the private record's layout.
int32_t GetPrefs(const imFileAccessRec8* access, imGetPrefsRec* prefs);

// imAnalysis: the codec text of the header's video subtype, bounded by the host's buffer.
int32_t GetCodecText(imAnalysisRec* record);

// imDataRateAnalysis: with no buffer, the size the table needs; with one, a key-frame entry of
// one frame's bytes per frame, in the frame rate's time base.
int32_t GetDataRateTable(imDataRateAnalysisRec* record);

// imGetTimeInfo8: the header's five text fields out to the host.
int32_t GetTimeInfo(imTimeInfoRec8* record);

// imSetTimeInfo8: the five text fields from the host into the header, which is then written to
// `file`. 0, the system's error code, or 4 (imMemErr) for a short write.
int32_t SetTimeInfo(void* file, imTimeInfoRec8* record);
