# Tests that say nothing about the daemon where its processor is emulated.
set(not_emulated
  # Frames of 17 milliseconds are over before an emulated test has asked twice.
  Picture.APacedDriverTakesOneNonblockingCommitAFrame
  # Two hundred clients, counted in seconds.
  Clients.TwoHundredIdleOnesDelayNeitherAQueryNorTheEnd
  # A minute of walking through a million items.
  JsonPatchLimits.ManyOperationsOnAHugeDocumentEndAsFailure
  # proot starts no programs of another processor.
  Isolations.ShowAChangeAPatternAndADump/UnderProot
  Launch.GivesTheDaemonTheBoardsFilesAndPrograms/UnderProot)
# Minutes of pixels, each compared by an emulated test.
foreach(format rgba bgr nv12 nv16 nv24 nv15 rgb)
  list(APPEND not_emulated LargeDump.ArrivesWholeFromBothSides/${format})
endforeach()
file(WRITE ${CMAKE_BINARY_DIR}/CTestCustom.cmake "set(CTEST_CUSTOM_TESTS_IGNORE \"${not_emulated}\")\n")
