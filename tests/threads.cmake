# What runs on threads, for the build with the thread sanitizer:
#   cmake --preset tsan && cmake --build --preset tsan --target threads && ctest --preset tsan -L threads
add_custom_target(threads)

# anomalis_on_threads(PROGRAM filter...): tests of test_PROGRAM that work on the pool or on a thread of their own.
function(anomalis_on_threads program)
  string(REPLACE ";" ":" filter "${ARGN}")
  add_dependencies(threads test_${program})
  add_test(NAME threads.${program} COMMAND test_${program} --gtest_filter=${filter})
  set_tests_properties(threads.${program} PROPERTIES LABELS threads TIMEOUT 1800)
endfunction()

anomalis_on_threads(core CorePool.* Log.* Settings.*)
anomalis_on_threads(forward Driver.* Pacing.* Polyhedron*.* BodyColumns.*threads* BodyColumns.*cores*)
anomalis_on_threads(inversion NormalMatrix.* DenseSteps.* OrthonormalBasis.* PerformAndLeave.* Restarts.*
  Ensemble.the_same* Ensemble.a_stop* FindBodies.one_sheet* FindBodies.both_channels* ResidualCovariance.*)
anomalis_on_threads(intake Load.* ReadRows.* RecordLines.* SurveyIndex.* Profile.*)
anomalis_on_threads(model StopTest.* Stop*.* RefreshModel.*)
anomalis_on_threads(flow ImportDesk.* FindDesk.a_stop* FindDesk.a_cancel* UncertaintyRun.a_stop* UncertaintyRun.a_cancel*)
anomalis_on_threads(output CleanTables.* EveryWriter.* ModelTable.* ProfileTable.*)
anomalis_on_threads(survey RunSurvey.GivesTheSame* RunSurvey.StoppedAnywhere* RunSurvey.AFullDisk* RunSurvey.Pictures*
  SurveyDesk.* SurveyResults.* Merge.*)
