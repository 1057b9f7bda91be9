// Memory that many threads ask for and give back, frame by frame.
#pragma once

namespace captionfx {

/// Keeps freed blocks with the process. A frame frees what the next one needs again, and giving it to the system and
/// back costs a thread a quarter of its time.
void KeepFreedMemory();

}  // namespace captionfx
