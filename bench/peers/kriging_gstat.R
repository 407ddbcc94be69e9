# SPDX-License-Identifier: MIT
# usage: kriging_gstat.R FOLDER STATIONS: gstat's local ordinary kriging of the benchmark's cells with
# the model of the benchmark. Prints the seconds of krige() alone and writes its values.
suppressMessages({library(sp); library(gstat)})
a <- commandArgs(TRUE)
name <- file.path(a[1], a[2])
stations <- read.csv(paste0(name, ".csv"))
coordinates(stations) <- ~x + y
m <- scan(paste0(name, ".model"), quiet = TRUE)
cells <- SpatialPoints(expand.grid(x = 300000 + (0:999 + 0.5) * 100, y = 4300000 - (0:999 + 0.5) * 100))
seconds <- system.time(
  values <- krige(z ~ 1, stations, cells, model = vgm(m[2], "Sph", m[3], m[1]), nmax = 12,
                  debug.level = 0)$var1.pred)[["elapsed"]]
file <- file(paste0(name, ".values"), "wb")
writeBin(values, file)
close(file)
cat(sprintf("%.4f\n", seconds))
