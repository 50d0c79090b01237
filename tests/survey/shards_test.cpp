#include "survey/cluster/shards.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/failure.h"
#include "support/temp_folder.h"
#include "survey/cluster/slurm.h"

namespace anomalis::survey {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Shards, EachLineIsInExactlyOneAndAllAreAboutAsLarge) {
    for (const int count : {1, 2, 3, 7, 50, 1000}) {
        for (const std::size_t lines : {0U, 1U, 2U, 12U, 999U, 1001U}) {
            std::vector<std::size_t> sizes(static_cast<std::size_t>(count));
            for (std::size_t line = 0; line < lines; ++line) {
                int shards = 0;
                for (int number = 1; number <= count; ++number) {
                    if (!in_shard(line, {number, count})) continue;
                    ++shards;
                    ++sizes[static_cast<std::size_t>(number) - 1];
                }
                ASSERT_EQ(shards, 1) << line << " of " << lines << " in " << count;
            }
            const auto [least, most] = std::ranges::minmax(sizes);
            EXPECT_LE(most - least, 1U);
        }
    }
}

TEST(Shards, AreReadAsTheyAreWrittenAndNothingElse) {
    EXPECT_EQ(shard_text(read_shard("2/5")), "2/5");
    EXPECT_EQ(read_shard("1/1").count, 1);
    for (const char* text : {"5/4", "0/4", "1/0", "0/0", "", "/", "3", "a/b", "-1/4", "1/4/2", "1.5/4",
                             "1/ 4", "1/99999999999999999999"}) {
        try {
            read_shard(text);
            ADD_FAILURE() << text;
        } catch (const Fault& fault) {
            EXPECT_THAT(fault.what(), HasSubstr(text));
        }
    }
    try {
        read_shard("5/4");
    } catch (const Fault& fault) {
        EXPECT_STREQ(fault.what(), "There is no shard 5/4: of 4 parts I is 1 to 4");
    }
}

TEST(Shards, LeaveOneRecordEachThatTellsWhichHaveNotEnded) {
    const TempFolder folder;
    const std::string digest = "00000000000000ab";
    EXPECT_THAT(read_shard_records(folder.folder()), IsEmpty());
    EXPECT_THAT(open_shards({}, digest), IsEmpty());
    write_shard_record(folder.folder(), {{1, 3}, digest, 4, 1});
    write_shard_record(folder.folder(), {{3, 3}, "older", 4, 0});
    folder.write("shards/2-of-3.json", "{\"shard\": 2, ");
    const std::vector<ShardRecord> records = read_shard_records(folder.folder());
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].failed, 1U);
    std::vector<std::string> open;
    for (const Shard& shard : open_shards(records, digest)) open.push_back(shard_text(shard));
    EXPECT_THAT(open, ElementsAre("2/3", "3/3"));
    remove_shard_record(folder.folder(), {1, 3});
    remove_shard_record(folder.folder(), {1, 3});
    EXPECT_FALSE(std::filesystem::exists(folder.path("shards/1-of-3.json")));
}

SlurmSurvey slurm_survey(const TempFolder& folder, std::size_t lines) {
    return {.program = folder.path("program"),
            .plan = folder.path("it's a plan.toml"),
            .folder = folder.path("100% done"),
            .name = "flown \"$(low)\"",
            .lines = lines,
            .cores = 2};
}

/// A cluster that only writes down what it is asked for.
class PretendedCluster {
  public:
    PretendedCluster() {
        program("bin/sbatch", "for word; do echo \"$word\"; done >> '" + folder.path("asked") +
                                  "'\necho 17\necho --- >> '" + folder.path("asked") + "'");
        program("bin/scontrol", "echo \"scontrol $*\" >> '" + folder.path("asked") + "'; kill $PPID");
        std::filesystem::create_directory(folder.path("100% done"));
        before_ = std::getenv("PATH");
        ::setenv("PATH", (folder.path("bin") + ":" + before_).c_str(), 1);
    }
    ~PretendedCluster() { ::setenv("PATH", before_.c_str(), 1); }
    PretendedCluster(const PretendedCluster&) = delete;
    PretendedCluster& operator=(const PretendedCluster&) = delete;

    void program(const std::string& name, const std::string& script) const {
        std::filesystem::permissions(folder.write(name, "#!/bin/bash\n" + script + "\n"),
                                     std::filesystem::perms::owner_all);
    }
    /// What the script ends with as a job, when the program ends with `status`.
    int job_status(int status, const std::string& what, const std::string& more = "") const {
        program("program", "echo \"$*\" >> '" + folder.path("asked") + "'; exit " + std::to_string(status));
        const std::string job = "SLURM_JOB_ID=17 SLURM_ARRAY_TASK_ID=3 SLURM_CPUS_PER_TASK=2 " + more +
                                " bash '" + slurm_script_file(folder.path("100% done")) + "' " + what +
                                " >/dev/null 2>&1";
        return std::system(job.c_str());
    }
    std::string asked() const { return folder.read("asked"); }

    TempFolder folder;

  private:
    std::string before_;
};

TEST(Slurm, ShardsAreOfSomeHundredLinesAndNeverMoreThanAnArrayHolds) {
    const TempFolder folder;
    EXPECT_EQ(slurm_shards(slurm_survey(folder, 0)), 1);
    EXPECT_EQ(slurm_shards(slurm_survey(folder, 200)), 1);
    EXPECT_EQ(slurm_shards(slurm_survey(folder, 201)), 2);
    EXPECT_EQ(slurm_shards(slurm_survey(folder, 100000)), 500);
    EXPECT_EQ(slurm_shards(slurm_survey(folder, 1000000)), 1000);
}

TEST(Slurm, TheScriptSubmitsAnArrayAndAJobForTheTablesBehindIt) {
    const PretendedCluster cluster;
    std::vector<std::string> told;
    submit_to_slurm(slurm_survey(cluster.folder, 900),
                    [&](const std::string& line) { told.push_back(line); });
    const std::string folder = cluster.folder.path("100%% done");
    EXPECT_EQ(cluster.asked(),
              "--parsable\n--job-name=flown \"$(low)\"\n--array=1-5\n--output=" + folder +
                  "/logs/shard-%a.log\n--cpus-per-task=2\n--mem-per-cpu=1G\n--requeue\n--open-mode=append\n" +
                  cluster.folder.path("100% done/survey.sbatch.sh") +
                  "\nshard\n---\n--parsable\n--job-name=flown \"$(low)\": "
                  "tables\n--dependency=afterany:17\n--output=" +
                  folder + "/logs/merge.log\n--cpus-per-task=2\n--mem-per-cpu=1G\n--requeue\n" +
                  "--open-mode=append\n" + cluster.folder.path("100% done/survey.sbatch.sh") +
                  "\nmerge\n---\n");
    EXPECT_EQ(told.at(0), "Submitted: 17 (5 shards) and 17 (the tables).");
    EXPECT_TRUE(std::filesystem::is_directory(cluster.folder.path("100% done/logs")));
}

TEST(Slurm, AShardThatHadNoRoomIsPutIntoTheQueueAgainAndOneWithFailedLinesIsNot) {
    const PretendedCluster cluster;
    submit_to_slurm(slurm_survey(cluster.folder, 900), [](const std::string&) {});
    std::filesystem::remove(cluster.folder.path("asked"));
    EXPECT_EQ(cluster.job_status(0, "shard"), 0);
    EXPECT_EQ(cluster.job_status(1, "shard"), 0);
    EXPECT_THAT(cluster.asked(), testing::Not(HasSubstr("scontrol")));
    EXPECT_THAT(cluster.asked(), HasSubstr("survey " + cluster.folder.path("it's a plan.toml") + " -o " +
                                           cluster.folder.path("100% done") + " -j 2 --shard 3/5\n"));
    EXPECT_EQ(WEXITSTATUS(cluster.job_status(2, "shard")), 2);
    EXPECT_NE(cluster.job_status(75, "shard"), 0);
    EXPECT_THAT(cluster.asked(), testing::EndsWith("--shard 3/5\nscontrol requeue 17\n"));
    std::filesystem::remove(cluster.folder.path("asked"));
    // Not for ever.
    EXPECT_EQ(WEXITSTATUS(cluster.job_status(75, "shard", "SLURM_RESTART_COUNT=10")), 75);
    EXPECT_THAT(cluster.asked(), testing::Not(HasSubstr("scontrol")));
}

TEST(Slurm, TheJobOfTheTablesEndsAsTheProgramDoes) {
    const PretendedCluster cluster;
    submit_to_slurm(slurm_survey(cluster.folder, 900), [](const std::string&) {});
    for (const int status : {0, 1, 75}) EXPECT_EQ(WEXITSTATUS(cluster.job_status(status, "merge")), status);
    EXPECT_THAT(cluster.asked(), testing::EndsWith(" -j 2 --merge\n"));
}

TEST(Slurm, WithoutSbatchTheScriptStaysAndSaysWhatToDo) {
    const PretendedCluster cluster;
    std::filesystem::remove(cluster.folder.path("bin/sbatch"));
    // The tools of the system, but no Slurm that may be installed.
    for (const char* tool : {"bash", "sh"})
        std::filesystem::create_symlink(std::string("/bin/") + tool, cluster.folder.path("bin/") + tool);
    ::setenv("PATH", cluster.folder.path("bin").c_str(), 1);
    std::vector<std::string> told;
    EXPECT_THROW(submit_to_slurm(slurm_survey(cluster.folder, 1),
                                 [&](const std::string& line) { told.push_back(line); }),
                 Fault);
    ASSERT_EQ(told.size(), 2U);
    EXPECT_THAT(told[0], HasSubstr("sbatch is not here, so nothing was submitted"));
    EXPECT_THAT(told[1], HasSubstr("survey.sbatch.sh"));
    EXPECT_TRUE(std::filesystem::exists(cluster.folder.path("100% done/survey.sbatch.sh")));
}

}  // namespace

}  // namespace anomalis::survey
