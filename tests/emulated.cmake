# Tests that prove nothing if the processor is emulated.
set(not_emulated
  # A frame of 17 milliseconds is over before an emulated test makes its second request.
  Picture.APacedDriverTakesOneNonblockingCommitAFrame
  # Two hundred clients, counted in seconds.
  Clients.TwoHundredIdleOnesDelayNeitherAQueryNorTheEnd
  # Walks through a million items, for a minute.
  JsonPatchLimits.ManyOperationsOnAHugeDocumentEndAsFailure
  # Holds a bound in processor time.
  JsonPatchCost.IsATimeThatTheWorstRequestsKeepTo
  # proot cannot start programs for another processor.
  Isolations.ShowAChangeAPatternAndADump/UnderProot
  Launch.GivesTheDaemonTheBoardsFilesAndPrograms/UnderProot)
# The emulated test compares pixels for minutes.
foreach(format rgba bgr nv12 nv16 nv24 nv15 rgb)
  list(APPEND not_emulated LargeDump.ArrivesWholeFromBothSides/${format})
endforeach()
file(WRITE ${CMAKE_BINARY_DIR}/CTestCustom.cmake "set(CTEST_CUSTOM_TESTS_IGNORE \"${not_emulated}\")\n")
