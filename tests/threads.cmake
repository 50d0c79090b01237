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
anomalis_on_threads(forward Driver.* Pacing.* Polyhedron*.* BodyColumns.*)
anomalis_on_threads(inversion NormalMatrix.* DenseSteps.* OrthonormalBasis.* PerformAndLeave.* Restarts.* ResidualCovariance.*
  Ensemble.* FindBodies.* FindBadLines.* FitRows.* ModelFit.* RestrictedLikelihood.* FitErrors.*)
anomalis_on_threads(intake *)
anomalis_on_threads(model *)
anomalis_on_threads(flow ImportDesk.* FindDesk.* UncertaintyRun.* UncertaintyOfALine.* InversionRun.* InversionDesk.*)
anomalis_on_threads(output *)
anomalis_on_threads(survey *)
