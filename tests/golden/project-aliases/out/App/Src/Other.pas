unit Other;
var Q: TQuery; { no unit of the project }
end.
